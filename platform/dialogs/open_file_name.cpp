// The platform's open dialog, described by a packed record whose texts are ANSI
// and stand in low memory. The process's directory never changes.
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>

#include "frame/runtime/runtime_error.h"
#include "orvix/platform.h"
#include "platform/dialogs/file_chooser.h"
#include "platform/dialogs/start_place.h"
#include "platform/host/host_table.h"
#include "platform/names/code_page.h"
#include "platform/names/path_map.h"
#include "platform/names/text_behind.h"

namespace Orvix {
namespace {

// Addresses have 32 bits. Read and written as a whole: the caller's record need
// not be aligned.
struct OpenRecord {
  std::uint32_t size;
  std::uint32_t owner;
  std::uint32_t instance;
  std::uint32_t filter;
  std::uint32_t custom_filter;
  std::uint32_t custom_filter_length;
  std::uint32_t filter_index;
  std::uint32_t file;
  std::uint32_t file_length;
  std::uint32_t title_of_file;
  std::uint32_t title_of_file_length;
  std::uint32_t initial_directory;
  std::uint32_t title;
  std::uint32_t flags;
  std::uint16_t file_offset;
  std::uint16_t extension_offset;
  std::uint32_t default_extension;
  std::uint32_t data;
  std::uint32_t hook;
  std::uint32_t template_name;
};
static_assert(sizeof(OpenRecord) == 76 && offsetof(OpenRecord, file) == 28 && offsetof(OpenRecord, flags) == 52 &&
              offsetof(OpenRecord, extension_offset) == 58 && offsetof(OpenRecord, default_extension) == 60);

constexpr std::uint32_t kSeveralFiles = 0x200;
constexpr std::size_t kMostExtension = 3;

// What CommDlgExtendedError says.
enum class Failure : DWORD {
  kNone = 0,  // chosen or cancelled
  kRecordSize = 0x0001,
  kInitialization = 0x0002,  // no record, or memory is exhausted
  kInvalidName = 0x3002,     // one record cannot express what was chosen
  kBufferTooSmall = 0x3003,
};
thread_local Failure last_failure = Failure::kNone;

char* At(std::uint32_t address) { return reinterpret_cast<char*>(static_cast<std::uintptr_t>(address)); }

Text TextAt(std::uint32_t address) { return address == 0 ? Text() : TextBehind(At(address)); }

// Pairs of NUL-terminated texts; an empty description ends them. The pair of the
// 1-based `index` comes first, where the programs take the filter to start with.
std::vector<FileFilter> FiltersAt(std::uint32_t address, std::uint32_t index) {
  std::vector<Text> texts;
  for (const char* text = At(address); address != 0 && *text != '\0'; text += std::strlen(text) + 1) {
    texts.push_back(TextBehind(text));
  }
  std::vector<FileFilter> filters = FiltersOf(texts);
  if (index >= 1 && index <= filters.size()) {
    const auto chosen = filters.begin() + (index - 1);
    std::rotate(filters.begin(), chosen, chosen + 1);
  }
  return filters;
}

// The name offered: callers pad it with spaces, and need not end it.
Text OfferedName(const OpenRecord& record) {
  std::string_view name(At(record.file), strnlen(At(record.file), record.file_length));
  return TextBehind(name.substr(0, name.find_last_not_of(' ') + 1));
}

bool Exists(const std::string& path) {
  struct stat ignored {};
  return stat(path.c_str(), &ignored) == 0;
}

// A name without a dot that is not there gets the default extension.
std::string WithExtension(std::string name, std::uint32_t default_extension) {
  if (name.find('.', name.rfind('/')) != std::string::npos || Exists(name)) return name;
  const std::string extension = ToUtf8(TextAt(default_extension).substr(0, kMostExtension));
  return extension.empty() ? name : name + "." + extension;
}

// The chosen files as the buffer holds them, without the NUL at the end: the
// path, or of several files the directory and the names, a NUL behind each.
struct Answer {
  Text buffer;
  std::size_t name_offset;  // of the first file's name
};

Answer AnswerOf(const std::vector<std::string>& names) {
  Answer answer{PlatformName(names.front()), 0};
  answer.name_offset = answer.buffer.rfind(u'\\') + 1;
  if (names.size() == 1) return answer;
  // The separator of a root stays: "C:" alone names no directory.
  const std::size_t root = answer.buffer.find(u'\\') + 1;
  const std::string directory = names.front().substr(0, names.front().rfind('/') + 1);
  const Text first = answer.buffer.substr(answer.name_offset);
  answer.buffer.resize(answer.name_offset == root ? root : answer.name_offset - 1);
  answer.name_offset = answer.buffer.size() + 1;
  answer.buffer += u'\0' + first + u'\0';
  for (std::size_t i = 1; i < names.size(); ++i) {
    const std::string name = names[i].substr(names[i].rfind('/') + 1);
    // The record has one directory for all.
    if (!names[i].starts_with(directory) || directory.size() + name.size() != names[i].size()) throw RuntimeError{52};
    if (name.find('\\') != std::string::npos) throw RuntimeError{52};
    answer.buffer += FromUtf8(name) + u'\0';
  }
  return answer;
}

// Says how much room was needed, as far as the buffer itself has room for that.
void GiveNeededRoom(const OpenRecord& record, std::size_t needed) {
  if (record.file == 0 || record.file_length < 2) return;
  const std::size_t number = std::min<std::size_t>(needed, 0xFFFF);
  At(record.file)[0] = static_cast<char>(number & 0xFF);
  At(record.file)[1] = static_cast<char>(number >> 8);
}

// Writes a text and its NUL to a caller's buffer. A service that gets the bytes from
// there knows what the code page lacks.
void GiveText(const Text& text, char* buffer) {
  const std::string_view bytes(buffer, text.size() + 1);
  if (ToAnsi({text.c_str(), bytes.size()}, buffer, '?')) {
    ForgetLossyConversion(bytes);
  } else {
    NoteLossyConversion(bytes, {text.c_str(), bytes.size()});
  }
}

// Writes the answer; what stands behind stays as it was.
Failure Give(const Answer& answer, bool several, OpenRecord& record) {
  const Text name = answer.buffer.substr(answer.name_offset);
  if (answer.buffer.size() >= record.file_length) {
    GiveNeededRoom(record, answer.buffer.size() + 1);
    return Failure::kBufferTooSmall;
  }
  GiveText(answer.buffer, At(record.file));
  const auto offset = [&](std::size_t at) { return static_cast<std::uint16_t>(std::min<std::size_t>(at, 0xFFFF)); };
  record.file_offset = offset(answer.name_offset);
  const std::size_t dot = several ? Text::npos : name.rfind(u'.');
  record.extension_offset = dot == Text::npos ? std::uint16_t{0} : offset(answer.name_offset + dot + 1);
  if (!several && record.title_of_file != 0 && name.size() < record.title_of_file_length) {
    GiveText(name, At(record.title_of_file));
  }
  return Failure::kNone;
}

// Whether a file was chosen. A buffer without room shows no dialog: its answer
// could not be handed back.
bool Open(OpenRecord& record) {
  if (record.file == 0 || record.file_length == 0) {
    last_failure = Failure::kBufferTooSmall;
    return false;
  }
  ChooserRequest request;
  request.multiple = (record.flags & kSeveralFiles) != 0;
  request.start = StartPlace(TextAt(record.initial_directory), OfferedName(record));
  request.title = TextAt(record.title);
  request.filters = FiltersAt(record.filter, record.filter_index);
  request.owner = static_cast<LONG>(record.owner);
  std::vector<std::string> names = ChooseFiles(request);
  if (names.empty()) return false;
  if (names.size() == 1) names[0] = WithExtension(std::move(names[0]), record.default_extension);
  last_failure = Give(AnswerOf(names), names.size() > 1, record);
  return last_failure == Failure::kNone;
}

bool ShowOpenDialog(void* request) noexcept {
  last_failure = Failure::kInitialization;
  if (request == nullptr) return false;
  OpenRecord record{};
  std::memcpy(&record.size, request, sizeof record.size);
  last_failure = Failure::kRecordSize;
  if (record.size != sizeof record) return false;
  std::memcpy(&record, request, sizeof record);
  last_failure = Failure::kNone;
  try {
    if (!Open(record)) return false;
  } catch (const RuntimeError&) {
    last_failure = Failure::kInvalidName;
    return false;
  } catch (const std::bad_alloc&) {
    last_failure = Failure::kInitialization;
    return false;
  }
  std::memcpy(request, &record, sizeof record);
  return true;
}

}  // namespace
}  // namespace Orvix

BOOL ORVIX_CALL GetOpenFileNameA(void* request) {
  const OxHost host = Orvix::CurrentHost();
  if (host.GetOpenFileNameA == nullptr) return Orvix::ShowOpenDialog(request) ? 1 : 0;
  Orvix::last_failure = Orvix::Failure::kNone;
  return host.GetOpenFileNameA(host.context, request);
}

// Of the thread's last dialog; 0 when it was chosen from or cancelled, and for
// a host's, whose reasons nobody knows.
DWORD ORVIX_CALL CommDlgExtendedError() { return static_cast<DWORD>(Orvix::last_failure); }
