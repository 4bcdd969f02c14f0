// Paths and directories: what a name denotes, and making a directory with all
// its missing parents.
#include "files/class_filename.h"
#include "files/file_facts.h"
#include "frame/class_orvix.h"
#include "frame/error_styles.h"
#include "frame/modErrorCodes.h"

namespace Orvix::component {

namespace {

constexpr LONG kDirectoriesAndHidden = kOxAttributeDirectory | kOxAttributeHidden;
constexpr LONG kAnyFile = kOxAttributeHidden | kOxAttributeSystem | kOxAttributeVolume;

bool AnyEntryMatches(TextView pattern, LONG mask) {
  const BstrHandle text(pattern);
  VARIANT_BOOL exists = VARIANT_FALSE;
  CheckRuntime(OxEntryExists(text.get(), mask, &exists));
  return exists != VARIANT_FALSE;
}

}  // namespace

BstrHandle classOrvix::GetPath(TextView filename) {
  return ReportAndContinue(u"Error GetPath.", TextView{}, [&] {
    const std::size_t last = filename.find_last_of(u":\\/");
    return BstrHandle(last == TextView::npos ? TextView{} : filename.substr(0, last + 1));
  });
}

bool classOrvix::DirExists(TextView directory) {
  // The search admits files as well, so an existing file counts. Callers rely on it.
  return FallBackSilently(false, [&] { return AnyEntryMatches(directory, kDirectoriesAndHidden); });
}

bool classOrvix::FileExists(TextView filename) {
  return FallBackSilently(false, [&] {
    classFilename name;
    name.SetAllowWildCards({VARIANT_TRUE});
    name.Assign(filename);
    if (name.HasWildCards()) return false;
    if (name.Filename().empty()) return false;
    if (filename.empty()) return false;
    return AnyEntryMatches(filename, kAnyFile);
  });
}

bool classOrvix::FileIsNewerThan(TextView new_file, TextView existing_file) {
  return FallBackSilently(false, [&] {
    const DATE first = FactsOf(new_file).modified;
    const DATE second = FactsOf(existing_file).modified;
    return first > second;
  });
}

bool classOrvix::MakeSingleDir(TextView directory) {
  const BstrHandle name(directory);
  CheckRuntime(OxMakeDirectory(name.get()));  // raised without a source
  return true;
}

void classOrvix::MakeDir(TextView path) {
  TranslateTo(errMakeDir, u"classOrvix.MakeDir", [&] {
    // The marker keeps the "\\" of a server name in one element; a doubled
    // backslash anywhere else is marked too, and its element never made.
    const Text marked = ReplaceAll(ReplaceAll(path, u"/", u"\\"), u"\\\\", u"@@");
    if (DirExists(marked)) return;
    const LONG count = LengthList(marked, u"\\");
    Text accumulated;
    for (LONG i = 1; i <= count; ++i) {
      const Text element = ReplaceAll(GetElement(marked, i, u"\\").View(), u"@@", u"\\\\");
      if (accumulated.empty()) {
        accumulated = element;  // an empty first element so drops the root
      } else {
        accumulated.append(u"\\").append(element);
      }
      const bool may_be_made =
          !element.empty() && element.find(u':') == Text::npos && element.find(u"\\\\") == Text::npos;
      if (!may_be_made || DirExists(accumulated)) continue;
      try {
        MakeSingleDir(accumulated);
      } catch (const Error& error) {
        if (error.number() != kPathFileAccess) throw;
      }
    }
  });
}

bool classOrvix::MakeDirEx(TextView path) {
  return FallBackSilently(false, [&] {
    MakeDir(path);
    return true;
  });
}

}  // namespace Orvix::component
