// classOrvix: the global object. `Orvix::Global()` is there without creating
// anything; outputs that are not wanted are left out.
#ifndef ORVIX_WRAPPER_UTILITY_HPP
#define ORVIX_WRAPPER_UTILITY_HPP

#include <memory>
#include <optional>

#include "orvix/wrapper/call.hpp"
#include "orvix/wrapper/filename.hpp"

namespace Orvix {

class Utility : public Object<_classOrvix> {
  using I = _classOrvix;
  using In = TextArgument;
  using Keys = enumRegistryConsts;
  using Any = Pointer<IDispatch>;

 public:
  Utility() : Utility(Component::Default()) {}
  explicit Utility(const Component& component) : Object(component.Create<I>(CLSID_classOrvix)) {}
  explicit Utility(Pointer<I> object) noexcept : Object(std::move(object)) {}

  // Separated lists; elements count from 1.
  [[nodiscard]] String AddElement(In list, In element, In separator) const {
    return Get<String>(&I::AddElement, list, element, separator);
  }
  [[nodiscard]] LONG FindFirstElement(In list, In element, In separator) const {
    return Get<LONG>(&I::FindFirstElement, list, element, separator);
  }
  [[nodiscard]] String GetElement(In list, LONG index, In separator) const {
    return Get<String>(&I::GetElement, list, index, separator);
  }
  [[nodiscard]] String InsertElement(In list, In element, LONG position, In separator) const {
    return Get<String>(&I::InsertElement, list, element, position, separator);
  }
  [[nodiscard]] LONG LengthList(In list, In separator) const { return Get<LONG>(&I::LengthList, list, separator); }
  [[nodiscard]] String DeleteElement(In list, LONG index, In separator) const {
    return Get<String>(&I::DeleteElement, list, index, separator);
  }

  // Text
  String SuperRTrim(In text, LONG* removed = nullptr) const { return Get<String>(&I::SuperRTrim, text, removed); }
  String SuperLTrim(In text, LONG* removed = nullptr, bool ignore_line_ends = false) const {
    return Get<String>(&I::SuperLTrim, text, removed, ignore_line_ends);
  }
  [[nodiscard]] String SuperLTrim2(In text) const { return Get<String>(&I::SuperLTrim2, text); }
  [[nodiscard]] String TabLTrim(In text) const { return Get<String>(&I::TabLTrim, text); }
  String MyReplace(In text, In target, In replacement, bool no_case_match = false, LONG* replacements = nullptr) const {
    return Get<String>(&I::MyReplace, text, target, replacement, no_case_match, replacements);
  }
  [[nodiscard]] String MyStr(const Value& value) const { return Get<String>(&I::MyStr, value); }

  // Arrays and collections
  [[nodiscard]] Value Min(const Array<Value>& values) const { return Get<Value>(&I::Min, values); }
  [[nodiscard]] Value Max(const Array<Value>& values) const { return Get<Value>(&I::Max, values); }
  [[nodiscard]] Value MinButZero(const Array<Value>& values) const { return Get<Value>(&I::MinButZero, values); }
  [[nodiscard]] Value MaxButZero(const Array<Value>& values) const { return Get<Value>(&I::MaxButZero, values); }
  [[nodiscard]] bool IsInStringArray(const Array<String>& array, In target, bool match_case = false) const {
    return Get<bool>(&I::IsInStringArray, array, target, match_case);
  }
  [[nodiscard]] bool ArrayIsEmpty(const Array<float>& array) const { return Get<bool>(&I::ArrayIsEmpty, array); }
  [[nodiscard]] bool StringArrayIsEmpty(const Array<String>& array) const {
    return Get<bool>(&I::StringArrayIsEmpty, array);
  }
  [[nodiscard]] bool IsInCollection(In key, const Any& collection) const {
    return Get<bool>(&I::IsInCollection, key, collection);
  }

  // Numbers, time, colours
  void Wait(LONG milliseconds) const { Call(&I::Wait, milliseconds); }
  [[nodiscard]] LONG GetTick() const { return Get<LONG>(&I::GetTick); }  // milliseconds, wrapping
  [[nodiscard]] float RoundSingle(float value) const { return Get<float>(&I::RoundSingle, value); }
  [[nodiscard]] float RoundDouble(double value) const { return Get<float>(&I::RoundDouble, value); }
  [[nodiscard]] String DayTime(LONG seconds) const { return Get<String>(&I::DayTime, seconds); }
  [[nodiscard]] String MillisecondsToTime(LONG milliseconds) const {
    return Get<String>(&I::MillisecondsToTime, milliseconds);
  }
  [[nodiscard]] bool IsEven(LONG number) const { return Get<bool>(&I::IsEven, number); }
  [[nodiscard]] bool IsOdd(LONG number) const { return Get<bool>(&I::IsOdd, number); }
  [[nodiscard]] LONG GetRandom(LONG upper, LONG lower) const { return Get<LONG>(&I::GetRandom, upper, lower); }
  [[nodiscard]] LONG GetRGB(LONG color, enumRGB part) const { return Get<LONG>(&I::GetRGB, color, part); }
  [[nodiscard]] LONG GetRed(LONG color) const { return Get<LONG>(&I::GetRed, color); }
  [[nodiscard]] LONG GetGreen(LONG color) const { return Get<LONG>(&I::GetGreen, color); }
  [[nodiscard]] LONG GetBlue(LONG color) const { return Get<LONG>(&I::GetBlue, color); }
  [[nodiscard]] LONG InvertColor(LONG color) const { return Get<LONG>(&I::InvertColor, color); }
  [[nodiscard]] String GetHexColor(LONG color) const { return Get<String>(&I::GetHexColor, color); }
  [[nodiscard]] LONG ChopCodeTiming2() const { return Get<LONG>(&I::get_lChopCodeTiming2); }
  void SetChopCodeTiming2(LONG value) const { Call(&I::put_lChopCodeTiming2, value); }

  // Paths and files
  [[nodiscard]] String GetPath(In filename) const { return Get<String>(&I::GetPath, filename); }
  void MakeDir(In path) const { Call(&I::MakeDir, path); }
  bool MakeDirEx(In path) const { return Get<bool>(&I::MakeDirEx, path); }
  [[nodiscard]] bool DirExists(In directory) const { return Get<bool>(&I::DirExists, directory); }
  [[nodiscard]] bool FileExists(In filename) const { return Get<bool>(&I::FileExists, filename); }
  [[nodiscard]] bool FileIsNewerThan(In new_file, In existing_file) const {
    return Get<bool>(&I::FileIsNewerThan, new_file, existing_file);
  }
  void StoreData(const Filename& filename, In data) const { Call(&I::StoreData, filename, data); }
  void StoreBinaryData(const Filename& filename, const Array<BYTE>& data) const {
    Call(&I::StoreBinaryData, filename, data);
  }
  void MyFileCopy(In source, In destination, bool sub_directories = false) const {
    Call(&I::MyFileCopy, source, destination, sub_directories);
  }
  void PlaySound(const Filename& filename) const { Call(&I::PlaySound, filename); }

  // Dialogs. `filter` is rewritten; the result is empty when nothing was chosen.
  [[nodiscard]] Filename OpenFile1(LONG hwnd, String& filter, LONG default_filter_index, In default_name,
                                   In default_extension, In directory, In title) const {
    return Filename(Get<Pointer<_classFilename>>(&I::OpenFile1, hwnd, &filter, default_filter_index, default_name,
                                                 default_extension, directory, title));
  }
  String OpenFile(LONG hwnd, bool* cancelled, bool center = true, std::optional<In> directory = {},
                  std::optional<In> default_name = {}, bool hide_read_only = true, bool multi_select = false,
                  bool read_only = false, std::optional<In> title = {}, std::optional<In> filters = {}) const {
    bool unused = false;
    return Get<String>(&I::OpenFile, hwnd, cancelled == nullptr ? &unused : cancelled, center, directory, default_name,
                       hide_read_only, multi_select, read_only, title, filters);
  }
  String SaveFile(LONG hwnd, bool* cancelled, bool center = true, std::optional<In> directory = {},
                  std::optional<In> default_name = {}, std::optional<In> title = {}, std::optional<In> filters = {},
                  bool overwrite_prompt = true) const {
    bool unused = false;
    return Get<String>(&I::SaveFile, hwnd, cancelled == nullptr ? &unused : cancelled, center, directory, default_name,
                       title, filters, overwrite_prompt);
  }

  // Windows and controls, used by name
  void AlwaysInFront(LONG window, LONG x, LONG y, LONG width, LONG height) const {
    Call(&I::AlwaysInFront, window, x, y, width, height);
  }
  void CenterWindow(const Any& window) const { Call(&I::CenterWindow, window); }
  void HourglassOn() const { Call(&I::HourglassOn); }
  void HourglassOff() const { Call(&I::HourglassOff); }
  void SetComboElement(const Any& combo, In text) const { Call(&I::SetComboElement, combo, text); }
  void LockControl(const Any& control, bool has_locked_property = true) const {
    Call(&I::LockControl, control, has_locked_property);
  }
  void UnLockControl(const Any& control, bool has_locked_property = true) const {
    Call(&I::UnLockControl, control, has_locked_property);
  }
  void TextBoxSetFocus(const Any& text_box) const { (void)Get<Value>(&I::TextBoxSetFocus, text_box); }
  void MyDoEvents(bool ignore_input_state = true) const { Call(&I::MyDoEvents, ignore_input_state); }

  // Registry
  void CreateNewKey(In name, Keys root) const { Call(&I::CreateNewKey, name, root); }
  bool CreateNewKeyRet(In name, Keys root) const { return Get<bool>(&I::CreateNewKeyRet, name, root); }
  void SetKeyValue(In key, In name, const Value& value, Keys type, Keys root = oxHKEY_CLASSES_ROOT) const {
    Call(&I::SetKeyValue, key, name, value, type, root);
  }
  bool SetKeyValueRet(In key, In name, const Value& value, Keys type, Keys root = oxHKEY_CLASSES_ROOT) const {
    return Get<bool>(&I::SetKeyValueRet, key, name, value, type, root);
  }
  // `text` takes what was read.
  bool GetKeyValue(Keys root, In key, In name, String& text) const {
    return Get<bool>(&I::GetKeyValue, root, key, name, &text);
  }

  // Shell, help, system
  void RunFile(In file, LONG hwnd) const { Call(&I::RunFile, file, hwnd); }
  LONG RunFileMore(In file, LONG hwnd, LONG show_command) const {
    return Get<LONG>(&I::RunFileMore, file, hwnd, show_command);
  }
  void ShowHelp(LONG id, In help_file, LONG hwnd, LONG command, std::optional<In> text = {}) const {
    Call(&I::ShowHelp, id, help_file, hwnd, command, text);
  }
  void ShowHTMLHelpKeyword(In help_file, LONG hwnd, In text) const {
    Call(&I::ShowHTMLHelpKeyword, help_file, hwnd, text);
  }
  void GetOSVersion(LONG& major, LONG& minor, LONG& build, LONG& platform, String& extra) const {
    Call(&I::GetOSVersion, &major, &minor, &build, &platform, &extra);
  }
  [[nodiscard]] String CreateGUID() const { return Get<String>(&I::CreateGUID); }
};

namespace global_detail {
inline constinit thread_local std::unique_ptr<const Utility>* kept = nullptr;
struct EndWithThread {
  std::unique_ptr<const Utility> utility = std::make_unique<const Utility>();
  EndWithThread() { kept = &utility; }
  ~EndWithThread() { kept = nullptr; }
};
}  // namespace global_detail

// The global object of this thread, made on first use. Destructors of static
// objects, which run after the main thread's own end, get one that stays.
inline const Utility& Global() {
  thread_local const global_detail::EndWithThread global;
  if (global_detail::kept == nullptr) {
    static const Utility& last = *std::make_unique<const Utility>().release();
    return last;
  }
  return **global_detail::kept;
}

}  // namespace Orvix

#endif
