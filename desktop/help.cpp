// Help files: a topic of the classic format, a keyword of the compiled format.
#include "desktop/ansi_arguments.h"
#include "frame/class_orvix.h"
#include "frame/error_styles.h"

namespace Orvix::component {

namespace {

constexpr TextView kErrorShowingHelp = u"Error showing help.";

constexpr UINT kDisplayIndex = 2;
constexpr UINT kKeywordLookup = 13;

// A keyword lookup. The size field is the sum of the fields' widths, without
// the zero bytes that follow the two truth values; viewers are used to it.
struct KeywordLink {
  LONG size = 28;
  SHORT reserved[2]{};
  LONG keywords = 0;
  LONG url = 0;
  LONG message_text = 0;
  LONG message_title = 0;
  LONG window = 0;
  SHORT index_on_fail[2]{};
};
static_assert(sizeof(KeywordLink) == 32 && offsetof(KeywordLink, keywords) == 8 &&
              offsetof(KeywordLink, index_on_fail) == 28);

// The record where a 32-bit data word can point to.
class LowRecord {
 public:
  explicit LowRecord(const KeywordLink& link) {
    if (!bytes_.Resize(sizeof link)) RaiseRuntimeError(kOutOfMemory);
    RtlMoveMemory(bytes_.data(), &link, sizeof link);
  }
  [[nodiscard]] std::uintptr_t Address() const { return reinterpret_cast<std::uintptr_t>(bytes_.data()); }

 private:
  LowBytes bytes_;
};

// The data word that a number or an address makes.
std::uintptr_t DataWord(LONG value) { return static_cast<ULONG>(value); }

}  // namespace

void classOrvix::ShowHelp(LONG id, TextReference help_file, LONG owner, LONG command, OptionalTextReference text) {
  ReportAndContinue(kErrorShowingHelp, [&] {
    AnsiArgument file(help_file);
    if (text.View().empty()) {
      WinHelpA(WindowOf(owner), file.get(), static_cast<UINT>(command), DataWord(id));
      file.WriteBack();
      return;
    }
    AnsiArgument spelled(text);
    const LowText topic(text.View());
    WinHelpA(WindowOf(owner), file.get(), static_cast<UINT>(command), DataWord(topic.Address()));
    file.WriteBack();
    spelled.WriteBack();
  });
}

void classOrvix::ShowHTMLHelpKeyword(TextReference help_file, LONG owner, TextReference text) {
  ReportAndContinue(kErrorShowingHelp, [&] {
    AnsiArgument file(help_file);
    const LowText keywords(text.View());
    KeywordLink link;
    link.keywords = keywords.Address();
    const LowRecord record(link);
    const void* const shown = HtmlHelpA(WindowOf(owner), file.get(), kKeywordLookup, record.Address());
    file.WriteBack();
    if (shown != nullptr) return;

    AnsiArgument spelled(text);
    HtmlHelpA(WindowOf(owner), file.get(), kDisplayIndex, DataWord(keywords.Address()));
    spelled.WriteBack();
  });
}

}  // namespace Orvix::component
