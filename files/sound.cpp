// Playing the sound that a classFilename names.
#include "frame/ansi_text.h"
#include "frame/class_orvix.h"
#include "frame/error_styles.h"
#include "frame/object_call.h"

namespace Orvix::component {

// Returns when the sound has ended; every failure ends the call quietly.
void classOrvix::PlaySound(_classFilename* filename) {
  constexpr UINT kUntilItsEnd = 0;
  SkipIfFails([&] {
    if (filename == nullptr) return;
    VARIANT_BOOL exists = VARIANT_FALSE;
    CallObject(filename, &_classFilename::Exists, &exists);
    if (exists == VARIANT_FALSE) return;
    BstrHandle name;
    CallObject(filename, &_classFilename::get_CompleteFilename, name.Receive());
    sndPlaySoundA(Narrowed(name.View()).c_str(), kUntilItsEnd);
  });
}

}  // namespace Orvix::component
