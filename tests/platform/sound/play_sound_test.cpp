// Sounds: which program plays what, the default sound in place of what cannot be
// played, and how long a wave file lasts.
#include <gmock/gmock.h>

#include "orvix/host.h"
#include "orvix/platform.h"
#include "platform/sound/wave_file.h"
#include "support/stand_in_desktop.h"

namespace Orvix::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string Number(std::uint32_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> 8 * i & 0xFF);
  return text;
}

struct Wave {
  std::uint32_t channels, rate, bits;
  std::uint32_t said;  // length of the samples as the header says
  std::size_t there;   // and as they are
};
std::string FileOf(const Wave& wave, const std::string& before_data = "") {
  const std::uint32_t block = wave.channels * wave.bits / 8;
  return "RIFF" + Number(0, 4) + "WAVEfmt " + Number(16, 4) + Number(1, 2) + Number(wave.channels, 2) +
         Number(wave.rate, 4) + Number(wave.rate * block, 4) + Number(block, 2) + Number(wave.bits, 2) + before_data +
         "data" + Number(wave.said, 4) + std::string(wave.there, '\0');
}
constexpr Wave kShort{1, 8000, 8, 80, 80};  // 10 ms

TEST(WaveFileTest, LengthsAreThoseOfTheSamplesThatAreThere) {
  const NativeDirectory directory;
  const auto length = [&](const std::string& content) -> long {
    directory.Write("w", content);
    const auto found = LengthOfWave(directory.Native("w"));
    return found ? static_cast<long>(found->count()) : -1;
  };
  EXPECT_EQ(length(FileOf({1, 8000, 8, 4000, 4000})), 500);
  EXPECT_EQ(length(FileOf({2, 44100, 16, 176400, 176400})), 1000);
  EXPECT_EQ(length(FileOf({1, 8000, 8, 0xFFFFFFFF, 800})), 100);          // never finished
  EXPECT_EQ(length(FileOf(kShort, "LIST" + Number(3, 4) + "abc.")), 10);  // chunks are padded
  EXPECT_EQ(length(FileOf({1, 0, 8, 8, 8})), -1);
  EXPECT_EQ(length(FileOf(kShort).substr(0, 40)), -1);
  EXPECT_EQ(length("RIFX" + FileOf(kShort).substr(4)), -1);
  EXPECT_EQ(length(""), -1);
  EXPECT_EQ(LengthOfWave(directory.Native("missing")), std::nullopt);
  EXPECT_EQ(LengthOfWave(directory.Native("")), std::nullopt);
}

class PlaySoundTest : public ::testing::Test {
 protected:
  PlaySoundTest() { desktop_.files.Write("a b.wav", FileOf(kShort)); }
  bool Plays(const std::string& name, UINT flags = 0) const {
    return sndPlaySoundA((ToUtf8(desktop_.files.Name(u"\\")) + name).c_str(), flags) != 0;
  }
  void InstallBell(const char* name, const std::string& content) const {
    data_home_.MakeDirectory("sounds/freedesktop/stereo");
    data_home_.Write(std::string("sounds/freedesktop/stereo/") + name, content);
  }
  [[nodiscard]] std::string Bell(const char* name) const {
    return data_home_.Native(std::string("./sounds/freedesktop/stereo/") + name);
  }

  Desktop desktop_;
  NativeDirectory data_home_;
  Variable data_home_variable_{"XDG_DATA_HOME", data_home_.Native(".").c_str()};
  Variable data_directories_{"XDG_DATA_DIRS", "/no/such/directory"};
};

TEST_F(PlaySoundTest, TheFirstPlayerThatCanPlaysAndIsWaitedFor) {
  EXPECT_FALSE(Plays("a b.wav"));  // nobody can
  desktop_.InstallAnswer("aplay", "");
  EXPECT_TRUE(Plays("A B.WAV"));
  EXPECT_THAT(desktop_.Words(), ElementsAre("aplay", desktop_.files.Native("a b.wav")));
  std::filesystem::remove(desktop_.programs.Native("calls"));
  desktop_.InstallAnswer("pw-play", "", 1);  // its server is not there
  EXPECT_TRUE(Plays("a b.wav"));
  EXPECT_THAT(desktop_.Words(),
              ElementsAre("pw-play", desktop_.files.Native("a b.wav"), "aplay", desktop_.files.Native("a b.wav")));
}

TEST_F(PlaySoundTest, WhatCannotBePlayedIsTheDefaultSound) {
  desktop_.InstallAnswer("paplay", "");
  desktop_.files.Write("text.wav", "no sound");
  EXPECT_FALSE(Plays("text.wav"));  // no default sound either
  InstallBell("bell.oga", "");
  EXPECT_TRUE(Plays("text.wav"));
  EXPECT_TRUE(Plays("missing.wav"));
  EXPECT_THAT(desktop_.Words(), ElementsAre("paplay", Bell("bell.oga"), "paplay", Bell("bell.oga")));
  EXPECT_FALSE(Plays("missing.wav", 0x2));  // without the default
  EXPECT_FALSE(Plays("a b.wav", 0x4));      // a sound in memory
  EXPECT_EQ(desktop_.Words().size(), 4U);
}

TEST_F(PlaySoundTest, AFileThatEveryPlayerRefusesIsTheDefaultSound) {
  for (const char* const player : {"pw-play", "aplay"}) {
    desktop_.Install(player, "#!/bin/sh\necho \"${0##*/} $#${1##*/}\" >> '" + desktop_.files.Native("played") +
                                 "'\ncase $1 in *bell*) exit 0;; esac\nkill -9 $$\n");
  }
  desktop_.Install("paplay", "no program");
  InstallBell("bell.wav", FileOf(kShort));
  desktop_.files.Write("-D.wav", FileOf(kShort));
  EXPECT_TRUE(Plays("-D.wav"));
  std::ifstream played(desktop_.files.Native("played"));
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(played), {}),
            "pw-play 1-D.wav\naplay 1-D.wav\npw-play 1bell.wav\n");
}

TEST_F(PlaySoundTest, TheUsersThemeComesBeforeTheMachines) {
  desktop_.InstallAnswer("pw-play", "");
  const NativeDirectory machine;
  machine.MakeDirectory("sounds/freedesktop/stereo");
  machine.Write("sounds/freedesktop/stereo/bell.oga", "");
  data_directories_.Set(("relative::/no/such/directory:" + machine.Native(".")).c_str());
  EXPECT_NE(sndPlaySoundA("SystemDefault", 0), 0);
  InstallBell("bell.wav", "no sound");
  InstallBell("bell.ogg", "");
  EXPECT_NE(sndPlaySoundA("", 0), 0);
  EXPECT_THAT(desktop_.Words(), ElementsAre("pw-play", machine.Native("./sounds/freedesktop/stereo/bell.oga"),
                                            "pw-play", Bell("bell.ogg")));
}

TEST_F(PlaySoundTest, NamesOfSystemSoundsAreTheThemes) {
  desktop_.InstallAnswer("aplay", "");
  InstallBell("dialog-error.wav", FileOf(kShort));
  InstallBell("dialog-warning.ogg", "");  // nothing for a player of waves
  EXPECT_NE(sndPlaySoundA("SystemHAND", 0), 0);
  EXPECT_EQ(sndPlaySoundA("SystemExclamation", 0), 0);
  EXPECT_THAT(desktop_.Words(), ElementsAre("aplay", Bell("dialog-error.wav")));
}

TEST_F(PlaySoundTest, ASoundInTheBackgroundIsStoppedByTheNext) {
  desktop_.Install("aplay", "#!/bin/sh\nexec /bin/sleep 30\n");
  EXPECT_TRUE(Plays("a b.wav", 0x1));
  EXPECT_FALSE(Plays("a b.wav", 0x1 | 0x10));  // the one that plays shall not be stopped
  EXPECT_NE(sndPlaySoundA(nullptr, 0), 0);
  desktop_.InstallAnswer("aplay", "");
  EXPECT_TRUE(Plays("a b.wav", 0x10));
}

TEST_F(PlaySoundTest, TheHostIsAskedFirst) {
  static std::string seen;
  seen.clear();
  OxHost host{};
  host.size = sizeof host;
  host.sndPlaySoundA = [](void*, const char* name, LONG flags) -> LONG {
    seen = std::string(name) + std::to_string(flags);
    return 9;
  };
  OxSetHost(&host);
  EXPECT_EQ(sndPlaySoundA("x.wav", 3), 9);
  OxSetHost(nullptr);
  EXPECT_EQ(seen, "x.wav3");
}

}  // namespace
}  // namespace Orvix::testing
