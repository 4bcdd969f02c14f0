// What must be known of a wave file before a program is asked to play it.
#ifndef ORVIX_PLATFORM_SOUND_WAVE_FILE_H
#define ORVIX_PLATFORM_SOUND_WAVE_FILE_H

#include <chrono>
#include <optional>
#include <string>

namespace Orvix {

// How long the wave file plays; none for a file that is not there or no wave
// file, or whose header says nothing sensible.
[[nodiscard]] std::optional<std::chrono::milliseconds> LengthOfWave(const std::string& path);

}  // namespace Orvix

#endif
