// The parts of a file name. Names are text: nothing here touches the disk. "\",
// "/" and ":" separate, all alike, and comparisons are exact.
#include "files/class_filename.h"
#include "frame/error_styles.h"
#include "frame/modErrorCodes.h"

namespace Orvix::component {

namespace {

constexpr TextView kInvalidFilename = u"Invalid filename.";

constexpr bool IsSeparator(char16_t unit) { return unit == u'\\' || unit == u'/' || unit == u':'; }
constexpr bool StartsWithTwoBackslashes(TextView text) { return text.starts_with(u"\\\\"); }

Text WithoutForbidden(TextView name, bool wild_cards_allowed) {
  const TextView forbidden = wild_cards_allowed ? TextView(u"<>|") : TextView(u"*?<>|");
  Text cleaned;
  cleaned.reserve(name.size());
  for (const char16_t unit : name) {
    if (forbidden.find(unit) == TextView::npos) cleaned.push_back(unit);
  }
  return cleaned;
}

// `text` up to its last character that is no dot; empty when there is none.
TextView TrimTrailingDots(TextView text) { return text.substr(0, text.find_last_not_of(u'.') + 1); }

}  // namespace

void classFilename::SetCompleteFilename(TextReference new_name) {
  TranslateTo(errInvalidFilename, u"classFilename.CompleteFilename", [&] {
    const Text cleaned = WithoutForbidden(new_name.View(), static_cast<bool>(allow_wild_cards_));
    new_name.Assign(cleaned);  // the caller sees the cleaned text, also when it is refused
    Assign(cleaned);
  });
}

void classFilename::Assign(TextView new_name) {
  TranslateTo(errInvalidFilename, u"classFilename.CompleteFilename", [&] {
    Text cleaned = WithoutForbidden(new_name, static_cast<bool>(allow_wild_cards_));
    TextView name;
    TextView path;
    TextView extension;
    const TextView text = cleaned;
    for (std::size_t i = text.size(); i > 0; --i) {
      const char16_t unit = text[i - 1];
      if (IsSeparator(unit)) {
        if (i == text.size()) RaiseLibraryError(errInvalidFilename, u"Filename.CompleteFilename", kInvalidFilename);
        name = text.substr(i);
        path = text.substr(0, i);
        break;
      }
      // A name that ends in "." has found nothing yet and goes on to the left:
      // "a.b." has the extension "b.".
      if (extension.empty() && unit == u'.') extension = text.substr(i);
    }
    if (name.empty()) name = text;
    Text new_name_part(name);
    Text new_path(path);
    Text new_extension(extension);
    name_ = std::move(new_name_part);
    path_ = std::move(new_path);
    extension_ = std::move(new_extension);
    complete_ = std::move(cleaned);
  });
}

Text classFilename::FtpForm(Text text) const {
  if (!IsFTP()) return text;
  return ReplaceAll(text, u"\\", u"/");
}

Text classFilename::CompleteFilename() const { return FtpForm(complete_); }

Text classFilename::Extension() const { return Lower(extension_); }

Text classFilename::ExtensionlessFilename() const {
  const TextView kept = Left(name_, Orvix::component::Length(name_) - Orvix::component::Length(extension_));
  return FtpForm(Text(TrimTrailingDots(kept)));
}

Text classFilename::ExtensionlessWithPath() const { return FtpForm(path_ + ExtensionlessFilename()); }

void classFilename::SetExtension(TextView new_value) {
  extension_ = Text(new_value);
  // The new extension's length is taken off the old name part, so only an
  // extension as long as the old one, or one longer, gives the expected name;
  // and the name part stays the old one. Callers rely on it.
  const Text base = ExtensionlessFilename();
  complete_ = path_ + base + u"." + extension_;
}

Text classFilename::Drive() const {
  const LONG colon = Find(1, path_, u":");
  if (colon >= 2) return Text(Left(path_, colon));
  if (path_.size() > 4 && StartsWithTwoBackslashes(path_)) {
    const LONG after_server = Find(3, path_, u"\\");
    return after_server > 0 ? Text(Left(path_, after_server - 1)) : Text{};
  }
  return {};
}

bool classFilename::IsFTP() const { return Equal(Lower(Drive()), u"ftp:"); }

bool classFilename::HasWildCards() const { return complete_.find_first_of(u"*?") != Text::npos; }

TextView classFilename::RemoveDrive(TextView text) const {
  const std::size_t colon = text.find(u':');
  // Unlike Drive, a colon at the very start counts.
  if (colon != TextView::npos) return text.substr(colon + 1);
  if (!StartsWithTwoBackslashes(path_)) return text;
  const LONG after_server = Find(3, path_, u"\\");
  return after_server > 0 ? Mid(text, after_server) : text;
}

Text classFilename::GetDrivelessPath() const { return FtpForm(Text(RemoveDrive(path_))); }

Text classFilename::GetDrivelessCompleteFilename() const { return Text(RemoveDrive(CompleteFilename())); }

Text classFilename::GetDrivelessCompleteFilenameEx(TrueByDefault add_root) const {
  Text name = GetDrivelessCompleteFilename();
  if (static_cast<bool>(add_root)) return name;
  // A name that does not start at the root gives an empty text. Callers rely on it.
  if (!name.starts_with(u'/') && !name.starts_with(u'\\')) return {};
  return name.substr(1);
}

classOrvix& classFilename::Utility() {
  if (!utility_) utility_ = std::make_unique<classOrvix>();
  return *utility_;
}

}  // namespace Orvix::component
