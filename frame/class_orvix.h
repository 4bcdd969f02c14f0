// The plain class behind `classOrvix`: 68 members, each in the room of its
// topic (text/, files/, desktop/), and one value that belongs to the caller.
#ifndef ORVIX_FRAME_CLASS_ORVIX_H
#define ORVIX_FRAME_CLASS_ORVIX_H

#include "frame/com_ptr.h"
#include "frame/parameters.h"
#include "frame/text_primitives.h"

namespace Orvix::component {

using RootKeyOrClasses = EnumerationOr<enumRegistryConsts, oxHKEY_CLASSES_ROOT>;

class classOrvix {
 public:
  static constexpr std::string_view kClassName = "classOrvix";

  // Separated lists (text/separated_list.cpp)
  BstrHandle AddElement(TextView list, TextView element, TextView separator);
  LONG FindFirstElement(TextView list, TextView element, TextView separator);
  BstrHandle GetElement(TextView list, LONG index, TextView separator);
  BstrHandle InsertElement(TextView list, TextView element, LONG position, TextView separator);
  LONG LengthList(TextView list, TextView separator);
  BstrHandle DeleteElement(TextView list, LONG index, TextView separator);

  // Trimming (text/trimming.cpp)
  BstrHandle SuperRTrim(TextView text, OptionalLongOut tokens_removed);
  BstrHandle SuperLTrim(TextView text, OptionalLongOut tokens_removed, FalseByDefault ignore_line_breaks);
  BstrHandle SuperLTrim2(TextView text);
  BstrHandle TabLTrim(TextView text);

  // Arrays and collections (text/array_values.cpp)
  Variant Min(ArrayOf<VARIANT> values);
  Variant Max(ArrayOf<VARIANT> values);
  Variant MinButZero(ArrayOf<VARIANT> values);
  Variant MaxButZero(ArrayOf<VARIANT> values);
  bool IsInStringArray(ArrayOf<BSTR> texts, TextView target, FalseByDefault match_case);
  bool ArrayIsEmpty(ArrayOf<float> array);
  bool StringArrayIsEmpty(ArrayOf<BSTR> array);
  bool IsInCollection(TextView key, IDispatch* collection);

  // Replacing (text/replacing.cpp)
  BstrHandle MyReplace(TextView text, TextView target, TextView replacement, OptionalBool no_case_match,
                       OptionalLongOut number_of_replacements);

  // Numbers and time (text/numbers.cpp, text/elapsed_time.cpp)
  void Wait(LONG milliseconds);
  float RoundSingle(float value);
  float RoundDouble(double value);
  bool IsEven(LONG number);
  bool IsOdd(LONG number);
  LONG GetTick();
  LONG GetRandom(LONG upper_bound, LONG lower_bound);
  BstrHandle MyStr(const VARIANT& value);
  Text DayTime(LONG seconds);
  Text MillisecondsToTime(LONG milliseconds);

  // Colours (text/colours.cpp)
  LONG GetRGB(LONG color, enumRGB part);
  Text GetHexColor(LONG color);
  LONG GetRed(LONG color);
  LONG GetGreen(LONG color);
  LONG GetBlue(LONG color);
  LONG InvertColor(LONG color);

  // Paths and directories (files/paths.cpp)
  BstrHandle GetPath(TextView filename);
  void MakeDir(TextView path);
  bool MakeDirEx(TextView path);
  bool DirExists(TextView directory);
  bool FileExists(TextView filename);
  bool FileIsNewerThan(TextView new_file, TextView existing_file);

  // Copying, storing, sound (files/copying.cpp, files/storing.cpp, files/sound.cpp)
  void MyFileCopy(TextView source, TextView destination, FalseByDefault sub_directories);
  void StoreData(_classFilename* filename, TextVariable data);
  void StoreBinaryData(_classFilename* filename, ArrayVariable<BYTE> data);
  void PlaySound(_classFilename* filename);

  // Dialogs (desktop/file_dialogs.cpp, desktop/open_dialog_record.cpp)
  ComPtr<_classFilename> OpenFile1(LONG owner, TextReference filter, LONG default_filter_index,
                                   TextVariable default_file_name, TextVariable default_extension,
                                   TextVariable initial_directory, TextVariable title);
  Text OpenFile(LONG owner, VARIANT_BOOL& cancel, TrueByDefault center, TextOr<u""> initial_directory,
                TextOr<u""> default_file_name, TrueByDefault hide_read_only, FalseByDefault multi_select,
                FalseByDefault read_only, TextOr<u"Open file"> title, TextOr<u""> filters);
  Text SaveFile(LONG owner, VARIANT_BOOL& cancel, TrueByDefault center, TextOr<u""> initial_directory,
                TextOr<u""> default_file_name, TextOr<u"Save file"> title, TextOr<u""> filters,
                TrueByDefault overwrite_prompt);

  // Windows and controls (desktop/windows.cpp)
  void AlwaysInFront(LONG handle, LONG x, LONG y, LONG width, LONG height);
  void CenterWindow(IDispatch* window);
  void HourglassOn();
  void HourglassOff();
  void SetComboElement(IDispatch* combo, TextVariable text);
  void LockControl(IDispatch* control, TrueByDefault has_locked_property);
  void UnLockControl(IDispatch* control, TrueByDefault has_locked_property);
  Variant TextBoxSetFocus(IDispatch* text_box);
  void MyDoEvents(TrueByDefault ignore_input_state);

  // Registry (desktop/registry.cpp)
  void CreateNewKey(TextReference name, enumRegistryConsts root);
  bool CreateNewKeyRet(TextReference name, enumRegistryConsts root);
  void SetKeyValue(TextReference key_name, TextReference value_name, const VARIANT& setting, enumRegistryConsts type,
                   RootKeyOrClasses root);
  bool SetKeyValueRet(TextReference key_name, TextReference value_name, const VARIANT& setting, enumRegistryConsts type,
                      RootKeyOrClasses root);
  bool GetKeyValue(enumRegistryConsts root, TextReference key_name, TextReference value_name, TextReference value);

  // Shell, help and system (desktop/shell.cpp, desktop/help.cpp, desktop/system.cpp)
  void RunFile(TextReference file, LONG owner);
  LONG RunFileMore(TextReference file, LONG owner, LONG show_command);
  void ShowHelp(LONG id, TextReference help_file, LONG owner, LONG command, OptionalTextReference text);
  void ShowHTMLHelpKeyword(TextReference help_file, LONG owner, TextReference text);
  void GetOSVersion(LONG& major, LONG& minor, LONG& build, LONG& platform_id, TextReference extra_info);
  Text CreateGUID();

  // The caller's own value: starts at 0, and no member reads or writes it.
  LONG timing() const { return timing_; }
  void set_timing(LONG value) { timing_ = value; }

 private:
  // Creates exactly one directory; raises the caught error again without a source.
  bool MakeSingleDir(TextView directory);

  LONG timing_ = 0;
};

}  // namespace Orvix::component

#endif
