// The platform's own open dialog.
#include <algorithm>

#include "desktop/ansi_arguments.h"
#include "frame/class_orvix.h"
#include "frame/classes.h"
#include "frame/object_call.h"

namespace Orvix::component {

namespace {

// The request as the platform reads it, with 32-bit addresses.
struct OpenRequest {
  ULONG lStructSize;
  LONG hwndOwner;
  LONG hInstance;
  LONG lpstrFilter;
  LONG lpstrCustomFilter;
  LONG nMaxCustFilter;
  LONG nFilterIndex;
  LONG lpstrFile;
  LONG nMaxFile;
  LONG lpstrFileTitle;
  LONG nMaxFileTitle;
  LONG lpstrInitialDir;
  LONG lpstrTitle;
  LONG Flags;
  USHORT nFileOffset;
  USHORT nFileExtension;
  LONG lpstrDefExt;
  LONG lCustData;
  LONG lpfnHook;
  LONG lpTemplateName;
};
static_assert(sizeof(OpenRequest) == 76 && offsetof(OpenRequest, nFileExtension) == 58);

constexpr LONG kRoomForPath = 1024;
constexpr LONG kRoomForTitle = 512;
// Ask before a missing file is made; the explorer style, links as they are, long
// names.
constexpr LONG kFlags = 0x2000 | 0x80000 | 0x100000 | 0x200000;

// The file buffer as it came back, at its full length; none when nothing was
// chosen.
struct Answer {
  bool chosen;
  Text file;
};

// The other texts are read after the filter has been written: one variable may
// stand for several arguments.
Answer ShowOpenFileDialog(LONG owner, TextReference filter, LONG default_filter_index, TextVariable default_file_name,
                          TextVariable default_extension, TextVariable initial_directory, TextVariable title) {
  Text filters(filter.View());
  std::ranges::replace(filters, u'|', u'\0');
  filters.append(2, u'\0');
  filter.Assign(filters);

  OpenRequest request{};
  request.lStructSize = sizeof request;
  request.hwndOwner = owner;
  // The platform has room for a path only behind a default name: without one
  // nothing is ever chosen, which callers rely on.
  const TextView default_name = ViewOf(default_file_name.get());
  const LowText file(Text(default_name) + Spaces(kRoomForPath));
  request.nMaxFile = default_name.empty() ? 0 : static_cast<LONG>(file.View().size());
  const LowText filter_text(filters);
  const LowText file_title(Spaces(kRoomForTitle));
  const LowText directory(ViewOf(initial_directory.get()));
  const LowText caption(ViewOf(title.get()));
  const LowText extension(ViewOf(default_extension.get()));
  request.lpstrFilter = filter_text.Address();
  request.nFilterIndex = default_filter_index;
  request.lpstrFile = file.Address();
  request.lpstrFileTitle = file_title.Address();
  request.nMaxFileTitle = kRoomForTitle;
  request.lpstrInitialDir = directory.Address();
  request.lpstrTitle = caption.Address();
  request.Flags = kFlags;
  request.lpstrDefExt = extension.Address();
  if (GetOpenFileNameA(&request) == 0) return {false, {}};
  return {true, Text(Widened(file.View()).View())};
}

}  // namespace

ComPtr<_classFilename> classOrvix::OpenFile1(LONG owner, TextReference filter, LONG default_filter_index,
                                             TextVariable default_file_name, TextVariable default_extension,
                                             TextVariable initial_directory, TextVariable title) {
  const Answer answer = ShowOpenFileDialog(owner, filter, default_filter_index, default_file_name, default_extension,
                                           initial_directory, title);
  if (!answer.chosen) return nullptr;
  ComPtr<_classFilename> filename = NewObject<_classFilename>();
  BstrHandle name;
  BSTR* const variable = name.Receive();  // the member may replace it
  *variable = BstrHandle(answer.file).Detach();
  CallObject(filename.get(), &_classFilename::put_CompleteFilename, variable);
  return filename;
}

}  // namespace Orvix::component
