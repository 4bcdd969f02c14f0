// Copying files through the shell.
#include "desktop/class_file_operation.h"
#include "frame/class_orvix.h"
#include "frame/error_styles.h"

namespace Orvix::component {

// The caller hears nothing of the outcome, and every step is tried.
void classOrvix::MyFileCopy(TextView source, TextView destination, FalseByDefault sub_directories) {
  CSHFileOp operation;
  operation.SetConfirmOperation({VARIANT_FALSE});
  operation.SetIncludeDirectories({sub_directories.raw});
  operation.SetConfirmMakeDir({VARIANT_TRUE});
  SkipIfFails([&] { operation.AddSourceFile(source); });
  SkipIfFails([&] { operation.AddDestFile(destination); });
  operation.SetSilentMode({VARIANT_TRUE});
  SkipIfFails([&] { operation.CopyFiles(); });
}

}  // namespace Orvix::component
