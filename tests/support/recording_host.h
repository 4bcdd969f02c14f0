// A host for the length of a test: keeps every message-box request instead of
// logging it, and may bring further services of its own.
#ifndef ORVIX_TESTS_SUPPORT_RECORDING_HOST_H
#define ORVIX_TESTS_SUPPORT_RECORDING_HOST_H

#include <string>
#include <vector>

#include "orvix/host.h"

namespace Orvix::testing {

struct MessageBoxRequest {
  std::u16string text;
  LONG style;
  std::u16string title;
  bool operator==(const MessageBoxRequest&) const = default;
};

// Installed while it lives. Services that `table` brings are called with its
// context; a message box it brings goes unrecorded.
class RecordingHost {
 public:
  RecordingHost() : RecordingHost(OxHost{}) {}
  explicit RecordingHost(OxHost table) {
    table.size = sizeof table;
    if (table.MessageBox == nullptr && table.context == nullptr) {
      table.context = this;
      table.MessageBox = [](void* self, const OLECHAR* text, LONG style, const OLECHAR* title) -> LONG {
        static_cast<RecordingHost*>(self)->boxes.push_back({TextOf(text), style, TextOf(title)});
        return kOk;
      };
    }
    OxSetHost(&table);
  }
  ~RecordingHost() { OxSetHost(nullptr); }
  RecordingHost(RecordingHost&&) = delete;  // nor copied, nor assigned

  std::vector<MessageBoxRequest> boxes;

 private:
  static constexpr LONG kOk = 1;
  static std::u16string TextOf(const OLECHAR* text) { return text == nullptr ? u"" : text; }
};

}  // namespace Orvix::testing

#endif
