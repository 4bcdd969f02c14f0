#include "platform/registry/record.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "platform/names/case_fold.h"

namespace Orvix::registry {

namespace {

constexpr std::size_t kAddressAt = 9;   // "cccccccc aaaaaaaa verb ..."
constexpr std::size_t kContentAt = 18;  // where the verb starts
constexpr char kDigits[] = "0123456789abcdef";

struct VerbWord {
  std::string_view word;
  Verb verb;
};
constexpr VerbWord kVerbs[] = {
    {"key", Verb::kKey}, {"drop", Verb::kDrop}, {"set", Verb::kSet}, {"unset", Verb::kUnset}};

constexpr auto kTables = [] {
  std::array<std::array<std::uint32_t, 256>, 4> tables{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t value = i;
    for (int bit = 0; bit < 8; ++bit) value = (value & 1) != 0 ? value >> 1 ^ 0xEDB88320 : value >> 1;
    tables[0][i] = value;
  }
  for (std::uint32_t i = 0; i < 256; ++i) {
    for (std::size_t table = 1; table < 4; ++table) {
      const std::uint32_t value = tables[table - 1][i];
      tables[table][i] = value >> 8 ^ tables[0][value & 0xFF];
    }
  }
  return tables;
}();

void AppendHex(std::string* line, std::uint32_t value, int digits) {
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) line->push_back(kDigits[value >> shift & 0xF]);
}

// The value of one hexadecimal digit, 16 for anything else.
unsigned DigitOf(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
  return 16;
}

std::optional<std::uint32_t> HexAt(std::string_view line, std::size_t at, std::size_t digits) {
  if (line.size() < at + digits) return std::nullopt;
  std::uint32_t value = 0;
  for (std::size_t i = at; i < at + digits; ++i) {
    const unsigned digit = DigitOf(line[i]);
    if (digit == 16) return std::nullopt;
    value = value << 4 | digit;
  }
  return value;
}

bool IsLoneSurrogate(TextView text, std::size_t at) {
  if (text_detail::IsHigh(text[at])) return at + 1 == text.size() || !text_detail::IsLow(text[at + 1]);
  return text_detail::IsLow(text[at]);
}

void AppendQuoted(std::string* line, TextView text) {
  line->push_back('"');
  std::size_t plain = 0;
  const auto put_plain = [&](std::size_t end) { line->append(ToUtf8(text.substr(plain, end - plain))); };
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char16_t unit = text[at];
    if (unit >= 0x20 && unit < 0x7F && unit != u'%' && unit != u'"') {
      if (at == plain) {
        // A run of plain ASCII needs no conversion.
        line->push_back(static_cast<char>(unit));
        plain = at + 1;
      }
      continue;
    }
    if (text_detail::IsHigh(unit) && !IsLoneSurrogate(text, at)) {
      ++at;
      continue;
    }
    const bool surrogate = unit >= 0xD800 && unit <= 0xDFFF;
    // The separators of lines and paragraphs make some editors break the line.
    const bool escape = unit < 0xA0 || surrogate || unit == 0x2028 || unit == 0x2029 || unit == 0xFEFF;
    if (!escape) continue;
    put_plain(at);
    plain = at + 1;
    line->append(unit < 0x100 ? "%" : "%u");
    AppendHex(line, unit, unit < 0x100 ? 2 : 4);
  }
  put_plain(text.size());
  line->push_back('"');
}

// Reads the fields of a line one after the other; blanks part them.
class Fields {
 public:
  explicit Fields(std::string_view line) : line_(line) {}

  std::string_view Word() {
    SkipBlanks();
    const std::size_t start = at_;
    while (at_ < line_.size() && !IsBlank(line_[at_])) ++at_;
    return line_.substr(start, at_ - start);
  }
  bool IsQuoted() {
    SkipBlanks();
    return at_ < line_.size() && line_[at_] == '"';
  }
  bool AtEnd() {
    SkipBlanks();
    return at_ == line_.size();
  }
  // A quoted text; false when it is malformed.
  bool Quoted(Text* text) {
    if (!IsQuoted()) return false;
    const std::size_t end = line_.find('"', at_ + 1);
    if (end == std::string_view::npos) return false;
    const std::string_view raw = line_.substr(at_ + 1, end - at_ - 1);
    at_ = end + 1;
    text->clear();
    for (std::size_t i = 0; i < raw.size();) {
      const std::size_t percent = std::min(raw.find('%', i), raw.size());
      if (!AppendPlain(raw.substr(i, percent - i), text)) return false;
      i = percent;
      if (i == raw.size()) break;
      const bool wide = i + 1 < raw.size() && raw[i + 1] == 'u';
      const std::size_t digits = wide ? 4 : 2;
      const std::size_t first = i + (wide ? 2 : 1);
      const std::optional<std::uint32_t> unit = HexAt(raw, first, digits);
      if (!unit) return false;
      text->push_back(static_cast<char16_t>(*unit));
      i = first + digits;
    }
    return true;
  }

 private:
  static bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }
  void SkipBlanks() {
    while (at_ < line_.size() && IsBlank(line_[at_])) ++at_;
  }
  static bool AppendPlain(std::string_view bytes, Text* text) {
    for (std::size_t i = 0; i < bytes.size();) {
      const auto [value, length] = text_detail::DecodeAt(bytes, i);
      if (length == 0 || value < 0x20) return false;
      if (value >= 0x10000) {
        text->push_back(static_cast<char16_t>(0xD7C0 + (value >> 10)));
        text->push_back(static_cast<char16_t>(0xDC00 | (value & 0x3FF)));
      } else {
        text->push_back(static_cast<char16_t>(value));
      }
      i += length;
    }
    return true;
  }

  std::string_view line_;
  std::size_t at_ = 0;
};

// Keys and names come in as C texts, so none holds a NUL, and a longer one could
// never be asked for.
bool IsKeyPath(TextView path) {
  if (path.find(u'\0') != TextView::npos) return false;
  if (Components(path).Count() > kMostLevels) return false;
  for (const TextView component : Components(path)) {
    if (component.size() > kMostKeyUnits) return false;
  }
  return true;
}

bool ParseData(Fields* fields, Record* record) {
  const std::string_view type = fields->Word();
  if (type.empty() || type.size() > 10) return false;
  std::uint64_t number = 0;
  for (const char c : type) {
    if (c < '0' || c > '9') return false;
    number = number * 10 + static_cast<std::uint64_t>(c - '0');
  }
  if (number > 0xFFFFFFFF) return false;
  record->type = static_cast<DWORD>(number);
  if (fields->IsQuoted()) {
    Text text;
    if (!fields->Quoted(&text)) return false;
    record->data.resize(text.size() * sizeof(char16_t));
    if (!text.empty()) std::memcpy(record->data.data(), text.data(), record->data.size());
    return true;
  }
  const std::string_view hex = fields->Word();
  if (hex.empty() || hex.size() % 2 != 0) return false;
  record->data.resize(hex.size() / 2);
  for (std::size_t i = 0; i < record->data.size(); ++i) {
    const unsigned high = DigitOf(hex[2 * i]);
    const unsigned low = DigitOf(hex[2 * i + 1]);
    if (high == 16 || low == 16) return false;
    record->data[i] = static_cast<char>(high << 4 | low);
  }
  return true;
}

// Whether verb, key and name of `content` could be read, and whether all of it.
struct Reading {
  bool named = false;
  bool whole = false;
};
Reading ParseContent(std::string_view content, Record* record) {
  Reading reading;
  Fields fields(content);
  const std::string_view word = fields.Word();
  const VerbWord* known = nullptr;
  for (const VerbWord& row : kVerbs) {
    if (row.word == word) known = &row;
  }
  if (known == nullptr || !fields.Quoted(&record->key) || !IsKeyPath(record->key)) return reading;
  record->verb = known->verb;
  const bool of_value = record->verb == Verb::kSet || record->verb == Verb::kUnset;
  if (of_value) {
    if (!fields.Quoted(&record->name)) return reading;
    if (record->name.size() > kMostNameUnits || record->name.find(u'\0') != Text::npos) return reading;
  }
  reading.named = true;
  reading.whole = (record->verb != Verb::kSet || ParseData(&fields, record)) && fields.AtEnd();
  return reading;
}

std::uint32_t AddressOf(const Record& record) {
  Text folded;
  for (const TextView component : Components(record.key)) {
    if (!folded.empty()) folded.push_back(u'\\');
    folded.append(FoldName(component));
  }
  const std::uint32_t key = KeyAddress(folded);
  const bool of_value = record.verb == Verb::kSet || record.verb == Verb::kUnset;
  return of_value ? ValueAddress(key, FoldName(record.name)) : key;
}

bool StartsWithVerb(std::string_view content) {
  for (const VerbWord& row : kVerbs) {
    if (content.starts_with(row.word) && content.substr(row.word.size()).starts_with(" \"")) return true;
  }
  return false;
}

bool HasChecksumFields(std::string_view line) {
  return line.size() > kContentAt && HexAt(line, 0, 8) && line[8] == ' ' && HexAt(line, kAddressAt, 8) &&
         line[kContentAt - 1] == ' ';
}

// Whether the first byte of a record has become a "#": a person who leaves a
// record out puts one in front.
bool HasSpoiltStart(std::string_view line) {
  return line.size() > kContentAt && line.front() == '#' && HexAt(line, 1, kAddressAt - 2) &&
         line[kAddressAt - 1] == ' ' && HexAt(line, kAddressAt, 8) && line[kContentAt - 1] == ' ' &&
         StartsWithVerb(line.substr(kContentAt));
}

// Looks for key and name of a value in a line whose fields before the verb are
// spoilt.
bool FindSet(std::string_view line, Record* record) {
  const std::size_t at = line.find("set \"");
  return at != std::string_view::npos && ParseContent(line.substr(at), record).named && record->verb == Verb::kSet;
}

// Whether a person wrote the line: it starts with its verb, so there is no
// checksum to hold against it.
bool IsWrittenByHand(std::string_view line) {
  Fields fields(line);
  const std::string_view word = fields.Word();
  for (const VerbWord& row : kVerbs) {
    if (row.word == word) return true;
  }
  return false;
}

}  // namespace

std::uint32_t Checksum(std::string_view bytes, std::uint32_t before) noexcept {
  std::uint32_t crc = ~before;
  const char* at = bytes.data();
  std::size_t left = bytes.size();
  if constexpr (std::endian::native == std::endian::little) {
    for (; left >= 4; left -= 4, at += 4) {
      std::uint32_t word = 0;
      std::memcpy(&word, at, sizeof word);
      word ^= crc;
      crc = kTables[3][word & 0xFF] ^ kTables[2][word >> 8 & 0xFF] ^ kTables[1][word >> 16 & 0xFF] ^
            kTables[0][word >> 24];
    }
  }
  for (; left > 0; --left, ++at) crc = crc >> 8 ^ kTables[0][(crc ^ static_cast<unsigned char>(*at)) & 0xFF];
  return ~crc;
}

std::uint32_t KeyAddress(TextView folded_key) noexcept {
  return Checksum({reinterpret_cast<const char*>(folded_key.data()), folded_key.size() * sizeof(char16_t)});
}

std::uint32_t ValueAddress(std::uint32_t key_address, TextView folded_name) noexcept {
  // No key holds a NUL, so a value never has the address of a key.
  const std::uint32_t parted = Checksum(std::string_view("\0\0", 2), key_address);
  return Checksum({reinterpret_cast<const char*>(folded_name.data()), folded_name.size() * sizeof(char16_t)}, parted);
}

std::string FormatRecord(const Record& record, std::uint32_t address) {
  std::string line;
  line.reserve(kContentAt + record.key.size() + record.name.size() + 2 * record.data.size() + 32);
  line.append(kContentAt, ' ');
  for (const VerbWord& row : kVerbs) {
    if (row.verb == record.verb) line.append(row.word);
  }
  line.push_back(' ');
  AppendQuoted(&line, record.key);
  if (record.verb == Verb::kSet || record.verb == Verb::kUnset) {
    line.push_back(' ');
    AppendQuoted(&line, record.name);
  }
  if (record.verb == Verb::kSet) {
    line.push_back(' ');
    line.append(std::to_string(record.type));
    line.push_back(' ');
    // Texts (type 1 text, 2 expandable text, 7 list of texts) stay readable.
    const bool text = record.type == 1 || record.type == 2 || record.type == 7;
    if (record.data.empty()) {
      line.append("\"\"");
    } else if (text && record.data.size() % sizeof(char16_t) == 0) {
      Text units(record.data.size() / sizeof(char16_t), u'\0');
      std::memcpy(units.data(), record.data.data(), record.data.size());
      AppendQuoted(&line, units);
    } else {
      const std::size_t start = line.size();
      line.resize(start + 2 * record.data.size());
      char* at = line.data() + start;
      for (const char c : record.data) {
        *at++ = kDigits[static_cast<unsigned char>(c) >> 4];
        *at++ = kDigits[static_cast<unsigned char>(c) & 0xF];
      }
    }
  }
  std::string fields;
  AppendHex(&fields, Checksum(std::string_view(line).substr(kContentAt)), 8);
  fields.push_back(' ');
  AppendHex(&fields, address, 8);
  line.replace(0, fields.size(), fields);
  line.push_back('\n');
  return line;
}

ParsedLine ParseLine(std::string_view line) {
  ParsedLine parsed;
  // An editor may have left the line ends of another system.
  if (line.ends_with('\r')) line.remove_suffix(1);
  if (line.find_first_not_of(" \t") == std::string_view::npos) return parsed;
  if (line.front() == '#' && !HasSpoiltStart(line)) return parsed;
  if (IsWrittenByHand(line)) {
    const Reading reading = ParseContent(line, &parsed.record);
    parsed.kind = reading.whole ? ParsedLine::Kind::kRecord : ParsedLine::Kind::kDamaged;
    // There is nothing to say that the names are right, so that only the loss of a
    // value is concluded from them.
    parsed.named = reading.named && parsed.record.verb == Verb::kSet;
    return parsed;
  }
  const std::string_view content = line.size() > kContentAt ? line.substr(kContentAt) : std::string_view{};
  const Reading reading = ParseContent(content, &parsed.record);
  if (reading.whole && HexAt(line, 0, 8) == Checksum(content)) {
    parsed.kind = ParsedLine::Kind::kRecord;
    return parsed;
  }
  parsed.kind = ParsedLine::Kind::kDamaged;
  parsed.address = HexAt(line, kAddressAt, 8);
  parsed.named =
      parsed.address ? reading.named && parsed.address == AddressOf(parsed.record) : FindSet(line, &parsed.record);
  return parsed;
}

std::size_t FindRecordInside(std::string_view line) {
  // The text that starts a record cannot occur inside one: quotes are escaped.
  for (std::size_t at = line.find(" \""); at != std::string_view::npos; at = line.find(" \"", at + 1)) {
    for (const VerbWord& row : kVerbs) {
      const std::size_t before = kContentAt + row.word.size();
      if (at <= before) continue;
      const std::string_view rest = line.substr(at - before);
      if (HasChecksumFields(rest) && StartsWithVerb(rest.substr(kContentAt))) return at - before;
    }
  }
  return std::string_view::npos;
}

bool IsBegunRecord(std::string_view text) {
  for (std::size_t i = 0; i < std::min(text.size(), kContentAt); ++i) {
    const bool is_blank = i == kAddressAt - 1 || i == kContentAt - 1;
    if (is_blank ? text[i] != ' ' : DigitOf(text[i]) == 16) return false;
  }
  // Cut off in the middle, it does not end in a quote where one may end.
  Record record;
  const bool ends_well =
      text.size() > kContentAt && text.ends_with('"') && ParseContent(text.substr(kContentAt), &record).whole;
  return !ends_well && text.find('\r') == std::string_view::npos && FindRecordInside(text) == std::string_view::npos;
}

}  // namespace Orvix::registry
