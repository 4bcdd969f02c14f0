// The slots of the interfaces of the file classes and of the file operations.
#ifndef ORVIX_TESTS_FRAME_CATALOGUE_FILES_H
#define ORVIX_TESTS_FRAME_CATALOGUE_FILES_H

#include "tests/frame/interface_catalogue.h"

namespace Orvix::testing::catalogue {

inline constexpr Member kClassFilename[] = {
    {1, "CompleteFilename", kPut, 1, "void (BSTR* sNewName [out])"},
    {2, "CompleteFilename", kGet, 1, "BSTR ()"},
    {3, "Exists", kMethod, 2, "BOOL ()"},
    {4, "Filename", kGet, 3, "BSTR ()"},
    {5, "Extension", kGet, 4, "BSTR ()"},
    {6, "Extension", kPut, 4, "void (BSTR* sNewValue)"},
    {7, "Path", kGet, 5, "BSTR ()"},
    {8, "ExtensionlessFilename", kGet, 6, "BSTR ()"},
    {9, "ExtensionlessWithPath", kGet, 7, "BSTR ()"},
    {10, "FileSize", kMethod, 8, "long ()"},
    {11, "GetFile", kMethod, 9, "BSTR ()"},
    {12, "ShortenedFilename", kMethod, 10, "BSTR (long* lMaxLength)"},
    {13, "Drive", kMethod, 11, "BSTR ()"},
    {14, "AllowWildCards", kPut, 12, "void (BOOL* bNew)"},
    {15, "AllowWildCards", kGet, 12, "BOOL ()"},
    {16, "HasWildCards", kMethod, 13, "BOOL ()"},
    {17, "CreateFile", kMethod, 14, "void (BSTR* sData ?)"},
    {18, "IsReadOnly", kMethod, 15, "BOOL ()"},
    {19, "IsFTP", kMethod, 16, "BOOL ()"},
    {20, "GetDrivelessPath", kMethod, 17, "BSTR ()"},
    {21, "GetDrivelessCompleteFilename", kMethod, 18, "BSTR ()"},
    {22, "DateTime", kMethod, 19, "VARIANT ()"},
    {23, "GetDrivelessCompleteFilenameEx", kMethod, 20, "BSTR (BOOL* bAddRoot ?=True)"},
    {24, "HasReadPermission", kMethod, 21, "BOOL ()"},
    {25, "HasWritePersmission", kMethod, 22, "BOOL ()"},
    {26, "Delete", kMethod, 23, "void ()"},
};

inline constexpr Member kClassDirectory[] = {
    {1, "lPointer", kGet, 1, "long ()"},
    {2, "lPointer", kPut, 1, "void (long lPointer)"},
    {3, "lNumFiles", kGet, 2, "long ()"},
    {4, "lNumFiles", kPut, 2, "void (long lNumFiles)"},
    {5, "Init", kMethod, 3,
     "void (BSTR* sMask, long* lAttribute ?=0, VARIANT* vFromDate ?=\"\", VARIANT* vToDate ?=\"\")"},
    {6, "File", kMethod, 4, "FileType (long* lIndex)"},
    {7, "SortFilesDate", kMethod, 5, "void ()"},
    {8, "SoftFilesDateEx", kMethod, 6, "void (BOOL* bAscending)"},
    {9, "SortFilesName", kMethod, 7, "VARIANT (BOOL* bAscending)"},
    {10, "GetFileName", kMethod, 8, "BSTR (long* lIndex)"},
};

inline constexpr Member kFileOperation[] = {
    {1, "AllowUndo", kPut, 1, "void (BOOL* bAllowUndo)"},
    {2, "AllowUndo", kGet, 1, "BOOL ()"},
    {3, "ConfirmMakeDir", kPut, 2, "void (BOOL* bConfirmMakeDir)"},
    {4, "ConfirmMakeDir", kGet, 2, "BOOL ()"},
    {5, "ConfirmOperation", kPut, 3, "void (BOOL* bConfirmOperation)"},
    {6, "ConfirmOperation", kGet, 3, "BOOL ()"},
    {7, "CustomText", kPut, 4, "void (BSTR* sCustomText)"},
    {8, "CustomText", kGet, 4, "BSTR ()"},
    {9, "IncludeDirectories", kPut, 5, "void (BOOL* bIncludeDirectories)"},
    {10, "IncludeDirectories", kGet, 5, "BOOL ()"},
    {11, "ParentWnd", kPut, 6, "void (long* hParentWnd)"},
    {12, "ParentWnd", kGet, 6, "long ()"},
    {13, "RenameOnCollision", kPut, 7, "void (BOOL* bRenameOnCollision)"},
    {14, "RenameOnCollision", kGet, 7, "BOOL ()"},
    {15, "SilentMode", kPut, 8, "void (BOOL* bSilentMode)"},
    {16, "SilentMode", kGet, 8, "BOOL ()"},
    {17, "MoveFiles", kMethod, 9, "BOOL ()"},
    {18, "CopyFiles", kMethod, 10, "BOOL ()"},
    {19, "DeleteFiles", kMethod, 11, "BOOL ()"},
    {20, "RenameFiles", kMethod, 12, "BOOL ()"},
    {21, "ClearSourceFiles", kMethod, 13, "void ()"},
    {22, "AddSourceFile", kMethod, 14, "void (BSTR* sFilename)"},
    {23, "ClearDestFiles", kMethod, 15, "void ()"},
    {24, "AddDestFile", kMethod, 16, "void (BSTR* sFilename)"},
};

}  // namespace Orvix::testing::catalogue

#endif
