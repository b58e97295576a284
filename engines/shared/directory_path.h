#pragma once

namespace speech {

/// Makes every missing folder of a path, which may begin with a network server ("\\server\share\…").
/// @return true when every folder of the path exists at the end
bool makeDirectoryPath(const char* path);

}  // namespace speech
