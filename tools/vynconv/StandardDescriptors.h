#pragma once

namespace vynconv {

/// Fills each of the descriptors 0 to 2 that the command was started without, so that no file of its own gets there:
/// it would be read as standard input, or messages would be written into it. Reading and writing there fail as they do
/// on a closed descriptor. Has to come before a file is opened. Throws `Failure`.
void fillClosedStandardDescriptors();

} // namespace vynconv
