// Playing a sound: by the first program of this machine that can, heard to its
// end before the call returns. Without such a program, or without a device, the
// call returns at once and nothing is heard.
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>

#include "frame/runtime/never_destroyed.h"
#include "frame/runtime/runtime_error.h"
#include "orvix/platform.h"
#include "platform/host/host_table.h"
#include "platform/names/path_map.h"
#include "platform/names/text_behind.h"
#include "platform/sound/wave_file.h"
#include "platform/system/process.h"
#include "platform/system/user_data.h"

namespace Orvix {
namespace {

using std::chrono::milliseconds;

constexpr UINT kReturnAtOnce = 0x1;
constexpr UINT kNoDefault = 0x2;
constexpr UINT kFromMemory = 0x4;
constexpr UINT kDoNotStop = 0x10;

// A program that hangs must not hold the caller; servers take a moment to start.
constexpr milliseconds kSlack{5000};
constexpr milliseconds kLongestThemeSound{10'000};

struct Player {
  std::string_view program;
  bool waves_only;  // takes anything else for bare samples, which is noise
};
constexpr Player kPlayers[] = {{"pw-play", false}, {"paplay", false}, {"aplay", true}};

// The platform's names of system sounds, in lower case, and the sound theme's.
struct SystemSound {
  TextView name;
  std::string_view theme_name;
};
constexpr SystemSound kSystemSounds[] = {
    {u"systemdefault", "bell"},
    {u"systemasterisk", "dialog-information"},
    {u"systemexclamation", "dialog-warning"},
    {u"systemhand", "dialog-error"},
    {u"systemquestion", "dialog-question"},
    {u"systemstart", "service-login"},
    {u"systemexit", "service-logout"},
};

struct Sound {
  std::string path;
  milliseconds limit;
  bool is_wave;
};

std::string VariableOr(const char* name, std::string fallback) {
  const char* const value = secure_getenv(name);
  return value == nullptr || *value == '\0' ? std::move(fallback) : value;
}

// A sound of the theme that every desktop has; none when it is not installed.
std::optional<Sound> ThemeSound(std::string_view name) {
  const std::string directories =
      UserDataDirectory() + ":" + VariableOr("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
  for (std::string_view rest = directories; !rest.empty();) {
    const std::string_view directory = rest.substr(0, rest.find(':'));
    rest.remove_prefix(std::min(rest.size(), directory.size() + 1));
    if (!directory.starts_with('/')) continue;
    const std::string stem = std::string(directory) + "/sounds/freedesktop/stereo/" + std::string(name);
    if (const auto length = LengthOfWave(stem + ".wav")) return Sound{stem + ".wav", *length + kSlack, true};
    for (const char* const ending : {".oga", ".ogg"}) {
      if (access((stem + ending).c_str(), R_OK) == 0) return Sound{stem + ending, kLongestThemeSound, false};
    }
  }
  return std::nullopt;
}

std::optional<Sound> SoundNamed(TextView name) {
  const auto lower = [](char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
  };
  for (const SystemSound& sound : kSystemSounds) {
    if (std::ranges::equal(name, sound.name, {}, lower)) return ThemeSound(sound.theme_name);
  }
  try {
    const std::string path = AbsolutePath(NativePath(name));
    if (const auto length = LengthOfWave(path)) return Sound{path, *length + kSlack, true};
  } catch (const RuntimeError&) {  // no name of a file
  }
  return std::nullopt;
}

// The sound that plays while nobody waits for it; only one at a time.
struct Background {
  std::mutex mutex;
  std::unique_ptr<ChildProgram> child;
};
Background& TheBackground() {
  static NeverDestroyed<Background> background;
  return *background;
}

void StopBackground(Background& background) {
  if (background.child != nullptr) background.child->Kill();
  background.child.reset();
}

// Whether some player took the sound: one that fails, as without its server,
// gives way to the next.
bool Play(const Sound& sound, bool waits) {
  for (const Player& player : kPlayers) {
    if (player.waves_only && !sound.is_wave) continue;
    const std::string program = FindProgram(player.program);
    if (program.empty()) continue;
    auto child = std::make_unique<ChildProgram>();
    if (child->Start({program, {sound.path}}, ChildProgram::Output::kUnheard) != 0) continue;
    if (!waits) {
      Background& background = TheBackground();
      const std::lock_guard lock(background.mutex);
      StopBackground(background);
      background.child = std::move(child);
      return true;
    }
    const std::optional<ProgramEnd> end = child->WaitFor(sound.limit);
    if (!end) child->Kill();
    if (!end || end->ExitedWith(0) || end->kind == ProgramEnd::Kind::kUnknown) return true;
  }
  return false;
}

// Ends a sound in the background; false when one plays that shall not be stopped.
bool MakeRoom(UINT flags) {
  Background& background = TheBackground();
  const std::lock_guard lock(background.mutex);
  if ((flags & kDoNotStop) != 0 && background.child != nullptr && !background.child->WaitFor(milliseconds{0})) {
    return false;
  }
  StopBackground(background);
  return true;
}

bool PlayNamed(const char* name, UINT flags) {
  if ((flags & kFromMemory) != 0) return false;
  if (!MakeRoom(flags)) return false;
  if (name == nullptr) return true;  // was asked to stop what plays, and nothing else
  const bool waits = (flags & kReturnAtOnce) == 0;
  const std::optional<Sound> sound = SoundNamed(TextBehind(name));
  if (sound && Play(*sound, waits)) return true;
  if ((flags & kNoDefault) != 0) return false;
  const std::optional<Sound> bell = ThemeSound("bell");
  return bell && Play(*bell, waits);
}

}  // namespace
}  // namespace Orvix

// Non-zero when the sound, or the default sound in its place, was played. Sounds
// in memory are not played, and a sound is never repeated.
BOOL ORVIX_CALL sndPlaySoundA(const char* name, UINT flags) {
  const OxHost host = Orvix::CurrentHost();
  if (host.sndPlaySoundA != nullptr) return host.sndPlaySoundA(host.context, name, static_cast<LONG>(flags));
  try {
    return Orvix::PlayNamed(name, flags) ? 1 : 0;
  } catch (const std::bad_alloc&) {
    return 0;
  }
}
