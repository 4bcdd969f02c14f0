// The walk over whole blocks, in every instruction set that this processor has:
// each against a plain walk. The walkers are local to their source, so it is
// compiled in once more, its public functions under names of this test.
#define FindUnits FindUnitsOfThisTest
#define WalkOccurrences WalkOccurrencesOfThisTest
#define FindCandidates FindCandidatesOfThisTest
#include "frame/unit_scan.cpp"  // NOLINT(bugprone-suspicious-include)

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace Orvix::component {
namespace {

struct NamedWalker {
  const char* name;
  Scanner scan;
};
std::vector<NamedWalker> Walkers() {
  std::vector<NamedWalker> walkers = {{"portable", {portable::WalkBlocks, portable::FillBits}}};
#if ORVIX_HAS_X86
  walkers.push_back({"sse2", {sse2::WalkBlocks, sse2::FillBits}});
#endif
#if ORVIX_HAS_AVX2
  if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("popcnt")) {
    walkers.push_back({"avx2", {avx2::WalkBlocks, avx2::FillBits}});
  }
#endif
  return walkers;
}

// Where a walk from `from` on finds the target, each search just past the last.
std::vector<std::size_t> PlainFinds(TextView text, TextView target, std::size_t from) {
  std::vector<std::size_t> finds;
  for (std::size_t at = text.find(target, from); at != TextView::npos; at = text.find(target, at + target.size())) {
    finds.push_back(at);
  }
  return finds;
}

// A walker passes every find of the blocks that it looked at, in order, and
// leaves less than a block.
void Check(const NamedWalker& walker, TextView text, TextView target, std::size_t from, std::size_t limit) {
  if (text.size() < target.size() || from > text.size() - target.size()) return;
  const std::vector<std::size_t> finds = PlainFinds(text, target, from);
  Progress progress;
  const std::size_t at = walker.scan.walk(text, target, from, limit, progress);
  if (progress.count == limit) {
    ASSERT_GE(finds.size(), limit);
    ASSERT_EQ(progress.last, finds[limit - 1]);
    return;
  }
  std::size_t passed = 0;
  while (passed < finds.size() && finds[passed] < at) ++passed;
  ASSERT_EQ(progress.count, passed);
  ASSERT_LT(passed, limit);
  ASSERT_LT(text.size() - at, kBlock + target.size() - 1);
  // Going on from there gives the other finds: what the last one covers is not
  // looked at again.
  const std::vector<std::size_t> rest(finds.begin() + static_cast<std::ptrdiff_t>(passed), finds.end());
  ASSERT_EQ(PlainFinds(text, target, std::max(progress.next, at)), rest);
}

// Few letters, so that finds touch, overlap and straddle blocks; and few finds,
// so that four blocks are passed at once.
TEST(UnitScan, EveryWalkerAgreesWithAPlainWalk) {
  for (const NamedWalker& walker : Walkers()) {
    SCOPED_TRACE(walker.name);
    std::mt19937 random(20261123);
    for (int round = 0; round < 6000; ++round) {
      Text text(random() % 900, u'a');
      const auto spread = 1 + random() % (round % 3 == 0 ? 200 : 6);
      for (char16_t& unit : text) unit = static_cast<char16_t>(u'a' + random() % spread);
      Text target(1 + random() % 4, u'a');
      for (char16_t& unit : target) unit = static_cast<char16_t>(u'a' + random() % 2);
      const std::size_t limit = random() % 4 == 0 ? kNotFound : 1 + random() % 120;
      Check(walker, text, target, random() % 40, limit);
      if (HasFatalFailure()) FAIL() << "round " << round;
    }
  }
}

// Every bit of a block, and units that share a byte with the target's.
TEST(UnitScan, EveryPlaceOfABlockIsSeen) {
  for (const NamedWalker& walker : Walkers()) {
    SCOPED_TRACE(walker.name);
    for (std::size_t place = 0; place < 320; ++place) {
      Text text(400, u'\u2c00');                                             // the low byte differs from the comma's
      for (std::size_t i = 0; i < text.size(); i += 2) text[i] = u'\u012c';  // the low byte is the comma's
      text[place] = u',';
      Progress progress;
      walker.scan.walk(text, u",", 0, 1, progress);
      ASSERT_EQ(progress.last, place);
      ASSERT_EQ(progress.count, 1u);
      std::uint32_t bits[12];
      walker.scan.fill(text.data(), 12, 1, u',', text[place + 1], bits);
      for (std::size_t block = 0; block < 12; ++block) {
        ASSERT_EQ(bits[block], block == place / 32 ? std::uint32_t{1} << place % 32 : 0);
      }
    }
  }
}

// Units with the sign bit set, which packing to bytes must not confuse.
TEST(UnitScan, UnitsWithTheHighBitAreEqualOnlyToThemselves) {
  for (const NamedWalker& walker : Walkers()) {
    SCOPED_TRACE(walker.name);
    for (const char16_t unit : {u'\0', u'\u0080', u'\u7fff', u'\u8000', u'\uff00', u'\uffff'}) {
      Text text(256, static_cast<char16_t>(unit ^ 0x8000));
      for (std::size_t i = 0; i < text.size(); i += 3) text[i] = unit;
      Check(walker, text, TextView(&unit, 1), 0, kNotFound);
      if (HasFatalFailure()) FAIL() << static_cast<unsigned>(unit);
    }
  }
}

// Runs of a doubled unit: finds never overlap, also across four blocks.
TEST(UnitScan, ADoubledUnitIsTakenInPairs) {
  for (const NamedWalker& walker : Walkers()) {
    SCOPED_TRACE(walker.name);
    for (std::size_t start = 120; start < 136; ++start) {
      for (std::size_t length = 1; length < 9; ++length) {
        Text text(400, u'.');
        text.replace(start, length, length, u'|');
        Check(walker, text, u"||", 0, kNotFound);
        if (HasFatalFailure()) FAIL() << length << " at " << start;
      }
    }
  }
}

}  // namespace
}  // namespace Orvix::component
