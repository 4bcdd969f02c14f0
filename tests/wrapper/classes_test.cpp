// The wrapper's classes: every kind of argument and result, failures, and where
// objects come from.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <thread>
#include <vector>

#include "orvix/orvix.hpp"
#include "support/run_program.h"

namespace Orvix {
namespace {

using testing_support::ScratchDirectory;

Text PlatformName(const std::filesystem::path& native) {
  String name;
  Check(OxPlatformName(native.c_str(), name.Receive()));
  return Text(name.View());
}

TEST(WrapperList, ElementsAndJoinAreWhatTheMembersSay) {
  const Utility& orvix = Global();
  for (const TextView separator : {u",", u"--", u"-", u"", u"abc"}) {
    for (const TextView list :
         {u"", u",", u"a", u"a,b", u",a,,b,", u"--a--b", u"---", u"a--b-", u"-a-", u"abcabc", u"xabcy", u"-----"}) {
      std::vector<Text> elements;
      for (const TextView element : Elements(list, separator)) elements.emplace_back(element);
      std::vector<Text> expected;
      const LONG count = separator.empty() ? 0 : orvix.LengthList(list, separator);
      for (LONG i = 1; i <= count; ++i) expected.emplace_back(orvix.GetElement(list, i, separator).View());
      EXPECT_EQ(elements, expected) << ToUtf8(list) << " by " << ToUtf8(separator);
      String joined;
      for (const Text& element : elements) joined = orvix.AddElement(joined, element, separator);
      EXPECT_EQ(Join(elements, separator), joined) << ToUtf8(list) << " by " << ToUtf8(separator);
    }
  }
  std::string kept;
  for (const TextView element : Elements(std::string("one,two"), ",")) kept += ToUtf8(element) + ";";
  EXPECT_EQ(kept, "one;two;");
  EXPECT_EQ(Join(std::vector<std::string>{"a", "\u00e4"}, ", "), u"a, \u00e4");
}

// Every boundary of the fast walks, against the slow rules of one character.
TEST(WrapperText, Utf8OfEveryMixtureComesBack) {
  std::mt19937 random(5);
  const Text pieces[] = {u"a",      u"plain ascii text", u"\u00e4",          u"\u07ff",
                         u"\u20ac", u"\U0001F600",       Text(1, u'\xDC80'), Text(1, u'\xDCFF')};
  for (int round = 0; round < 3000; ++round) {
    Text text;
    std::string bytes;
    for (std::size_t count = random() % 12; count > 0; --count) {
      const Text& piece = pieces[random() % std::size(pieces)];
      text += piece;
      bytes += ToUtf8(piece);
    }
    EXPECT_EQ(ToUtf8(text), bytes);
    // What stands alone may have become a character beside its neighbours.
    EXPECT_EQ(ToUtf8(FromUtf8(bytes)), bytes);
    if (text.find_first_of(u"\xDC80\xDCFF") == Text::npos) {
      EXPECT_EQ(FromUtf8(bytes), text);
    }
  }
  bool exact = true;
  EXPECT_EQ(ToUtf8(Text(1, u'\xD800') + u"x", &exact), "\xEF\xBF\xBDx");
  EXPECT_FALSE(exact);
}

TEST(WrapperGlobal, TakesTextsInEveryEncoding) {
  const Utility& orvix = Global();
  const std::string utf8 = "a,b,c";
  const std::u16string utf16 = u"a,b,c";
  const String kept = u"a,b,c";
  EXPECT_EQ(orvix.GetElement(utf8, 1, ","), "a");
  EXPECT_EQ(orvix.GetElement(utf16, 2, u","), "b");
  EXPECT_EQ(orvix.GetElement(kept, 3, std::string_view(",")), "c");
  const String comma = ",";
  EXPECT_EQ(orvix.InsertElement(kept, "X", 2, comma), u"aX,,b,c");
  EXPECT_EQ(kept, "a,b,c");
  EXPECT_EQ(comma, ",");
}

TEST(WrapperGlobal, OneObjectAThread) {
  const _classOrvix* here = Global().get();
  EXPECT_EQ(Global().get(), here);
  Global().SetChopCodeTiming2(12);
  LONG there = -1;
  std::thread([&] {
    there = Global().ChopCodeTiming2();
    Global().SetChopCodeTiming2(99);
  }).join();
  EXPECT_EQ(there, 0);
  EXPECT_EQ(Global().ChopCodeTiming2(), 12);
}

TEST(WrapperUtility, OptionalArgumentsAndOutputs) {
  const Utility& orvix = Global();
  LONG removed = -1;
  EXPECT_EQ(orvix.SuperRTrim("abc \t ", &removed), "abc");
  EXPECT_EQ(removed, 3);
  EXPECT_EQ(orvix.SuperRTrim("abc "), "abc");
  EXPECT_EQ(orvix.SuperLTrim("\r\n x"), "\r\n x");
  EXPECT_EQ(orvix.SuperLTrim("\r\n x", nullptr, true), "x");
  LONG replacements = 0;
  EXPECT_EQ(orvix.MyReplace("aXaxbb", "x", "-", true, &replacements), "a-a-bb");
  EXPECT_EQ(replacements, 2);
  EXPECT_EQ(orvix.MyReplace("aXaxbb", "x", "-"), "aXa-bb");
}

TEST(WrapperUtility, ArraysEnumerationsAndNumbers) {
  const Utility& orvix = Global();
  EXPECT_EQ(orvix.Max({3, -7, 1}).To<LONG>(), 3);
  EXPECT_EQ(orvix.Min(std::vector<Value>{3, -7, 1}).To<LONG>(), -7);
  EXPECT_EQ(orvix.MinButZero({0, 5, 4}).To<LONG>(), 4);
  EXPECT_TRUE(orvix.IsInStringArray({"a", u"b"}, "b"));
  EXPECT_TRUE(orvix.ArrayIsEmpty({}));
  EXPECT_FALSE(orvix.ArrayIsEmpty({1.5F}));
  EXPECT_EQ(orvix.GetRGB(0x123456, oxGreen), 0x34);
  EXPECT_TRUE(orvix.IsEven(4));
  EXPECT_FALSE(orvix.IsOdd(4));
}

TEST(WrapperUtility, ObjectsAsArguments) {
  const ScratchDirectory scratch;
  Filename name(PlatformName(scratch.Path() / "data.bin"));
  Global().StoreData(name, "text");
  EXPECT_EQ(testing_support::ReadWhole(scratch.Path() / "data.bin"), "text");
  Global().StoreBinaryData(name, std::vector<BYTE>{0, 255, 10});
  EXPECT_EQ(testing_support::ReadWhole(scratch.Path() / "data.bin"), std::string("\x00\xFF\x0A", 3));
  EXPECT_EQ(name.FileSize(), 3);
}

TEST(WrapperUtility, RegistryWritesAndReadsBack) {
  const Utility& orvix = Global();
  EXPECT_TRUE(orvix.CreateNewKeyRet("Wrapper\\Key", oxHKEY_CURRENT_USER));
  EXPECT_TRUE(orvix.SetKeyValueRet("Wrapper\\Key", "Name", "value", oxREG_SZ, oxHKEY_CURRENT_USER));
  String text;
  EXPECT_TRUE(orvix.GetKeyValue(oxHKEY_CURRENT_USER, "Wrapper\\Key", "Name", text));
  EXPECT_EQ(text, "value");
}

TEST(WrapperFilename, PropertiesBothWays) {
  Filename name("C:\\Data\\report.old.txt");
  EXPECT_EQ(name.Path(), "C:\\Data\\");
  EXPECT_EQ(name.Name(), "report.old.txt");
  EXPECT_EQ(name.Extension(), "txt");
  EXPECT_EQ(name.ExtensionlessFilename(), "report.old");
  name.SetAllowWildCards(true);
  EXPECT_TRUE(name.AllowWildCards());
  EXPECT_EQ(name.GetDrivelessCompleteFilenameEx(), "\\Data\\report.old.txt");
  EXPECT_EQ(name.GetDrivelessCompleteFilenameEx(false), "Data\\report.old.txt");
}

TEST(WrapperErrors, CarryNumberSourceAndDescription) {
  Filename name;
  try {
    name.SetCompleteFilename("C:\\Data\\");
    FAIL() << "a name that ends in a separator is refused";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 60000);
    EXPECT_EQ(error.Result(), static_cast<HRESULT>(0x800AEA60));
    EXPECT_EQ(error.Source(), u"classFilename.CompleteFilename");
    EXPECT_EQ(error.Description(), u"Invalid filename.");
    EXPECT_STREQ(error.what(), "Error 60000 (classFilename.CompleteFilename): Invalid filename.");
  }
}

TEST(WrapperErrors, NumbersAboveSixteenBits) {
  Stack stack;
  try {
    (void)stack.Pop();
    FAIL();
  } catch (const std::exception& error) {
    EXPECT_STREQ(error.what(), "Error 66000 (classStack.Pop): Stack is empty");
  }
}

TEST(WrapperErrors, NoObjectIsNinetyOne) {
  const Filename none{Pointer<_classFilename>()};
  EXPECT_FALSE(none);
  try {
    (void)none.Path();
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 91);
    EXPECT_EQ(error.Description(), u"Object variable or With block variable not set");
  }
}

TEST(WrapperDirectory, RecordsAreOwned) {
  const ScratchDirectory scratch;
  std::ofstream(scratch.Path() / "B.TXT") << "12345";
  std::ofstream(scratch.Path() / "a.txt") << "1";
  const Text folder = PlatformName(scratch.Path()) + u"\\";
  Directory directory;
  directory.Init(folder + u"*.txt");
  ASSERT_EQ(directory.NumFiles(), 2);
  Directory empty;
  empty.SortFilesDate();
  empty.SoftFilesDateEx(false);
  empty.SortFilesName(true);
  directory.SortFilesName(true);
  const DirectoryEntry entry = directory.File(1);
  EXPECT_EQ(entry.file, "B.TXT");
  EXPECT_EQ(entry.path, folder);
  EXPECT_EQ(entry.complete_filename, folder + u"B.TXT");
  EXPECT_EQ(entry.extension, "txt");
  EXPECT_EQ(entry.size, 5);
  EXPECT_GT(entry.date.days, 36526.0);
  EXPECT_EQ(directory.GetFileName(2), "a.txt");
  directory.Init(folder + u"*.txt", 0, "1990-01-01", "1990-12-31");
  EXPECT_EQ(directory.NumFiles(), 0);
}

TEST(WrapperStringBuffer, IndexedPropertiesAndChains) {
  StringBuffer buffer("Hello");
  EXPECT_EQ(buffer.Left(3).Text(), "Hel");
  EXPECT_EQ(buffer.Mid(2).Text(), "ello");
  EXPECT_EQ(buffer.Mid(2, 2).Text(), "el");
  buffer.SetMid(2, {}, "XY");
  EXPECT_EQ(buffer.Text(), "HXYlo");
  buffer.SetRight(2, StringBuffer("ab"));
  EXPECT_EQ(buffer.Text(), "HXYab");
  buffer.SetChar(1, 'h');
  EXPECT_EQ(buffer.Char(1), 104);
  EXPECT_EQ(buffer.Append("!").Append(7).Text(), "hXYab!7");
  EXPECT_EQ(buffer.UCase().get(), buffer.get());
  EXPECT_EQ(buffer.Find("B"), 5);
  EXPECT_EQ(buffer.Find("X", 3), 0);
  EXPECT_EQ(StringBuffer("a;b").GetElement(2, ";"), "b");
}

TEST(WrapperStacks, ValuesAndObjects) {
  Stack values;
  values.Push(1);
  values.Push("two");
  LONG index = 0;
  EXPECT_TRUE(values.IsOnStack(1, sdEndToStart, &index));
  EXPECT_EQ(index, 1);
  EXPECT_TRUE(values.IsOnStack("two", sdStartToEnd));
  EXPECT_EQ(values.Peek(1).To<LONG>(), 1);
  EXPECT_EQ(values.Pop().To<std::string>(), "two");
  EXPECT_EQ(values.Size(), 1);
  values.Push(StringBuffer("held"));
  EXPECT_EQ(StringBuffer(values.Pop().To<Pointer<_classString>>()).Text(), "held");

  ObjectStack objects;
  objects.Push(values);
  EXPECT_EQ(objects.GetStackItem(1).get(), values.get());
  EXPECT_EQ(objects.Pop().As<_classStack>().get(), values.get());
  EXPECT_TRUE(objects.IsEmpty());
}

TEST(WrapperFileOperation, CopiesAFile) {
  const ScratchDirectory scratch;
  std::ofstream(scratch.Path() / "from") << "content";
  FileOperation operation;
  operation.SetSilentMode(true);
  operation.SetConfirmOperation(false);
  EXPECT_TRUE(operation.SilentMode());
  operation.SetCustomText(u"copying");
  EXPECT_EQ(operation.CustomText(), "copying");
  operation.AddSourceFile(PlatformName(scratch.Path() / "from"));
  operation.AddDestFile(PlatformName(scratch.Path() / "to"));
  EXPECT_TRUE(operation.CopyFiles());
  EXPECT_EQ(testing_support::ReadWhole(scratch.Path() / "to"), "content");
}

std::string LibraryFile() {
  const char* folder = std::getenv("ORVIX_LIB");
  return (folder == nullptr ? std::string("lib") : std::string(folder)) + "/liborvix.so";
}

TEST(WrapperComponent, EveryWayToAnObject) {
  EXPECT_EQ(Filename(Component::Linked()).Extension(), "");
  EXPECT_EQ(Filename(Component::Load(LibraryFile())).Extension(), "");
  EXPECT_EQ(Filename(Component::Load()).Extension(), "");
  EXPECT_TRUE(Component::Load().TypeLibrary());
}

TEST(WrapperComponent, RegistrationDecidesWhetherTheRegistryKnows) {
  const Component component = Component::Load(LibraryFile());
  component.Unregister();
  try {
    const Filename name(Component::Registered());
    FAIL() << "the class is not registered";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 429);
  }
  component.Register();
  Filename name(Component::Registered());
  name.SetCompleteFilename("a.b");
  EXPECT_EQ(name.Extension(), "b");
  EXPECT_TRUE(Component::Registered().TypeLibrary());
  component.Unregister();
}

TEST(WrapperComponent, LibraryThatIsNotThere) {
  try {
    (void)Component::Load("/nonexistent/liborvix.so");
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 48);
    EXPECT_TRUE(error.Description().starts_with(u"Error in loading DLL: "));
  }
}

}  // namespace
}  // namespace Orvix
