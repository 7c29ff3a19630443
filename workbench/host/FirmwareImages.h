#pragma once

#include <QString>

class IFlasher;

// Which firmware image a flasher offers: the one in its firmware folder
// whose name carries the highest version. The command line and the window
// offer the same image.
namespace FirmwareImages {

// The folder as a local path; the module may give it as a "file:///" URL.
QString localFolder(const QString& folder);

// The newest image matching the flasher's pattern in its folder, comparing
// the numbers in the names as numbers (v2.10.0 after v2.9.1); empty when
// the folder holds none.
QString newest(const IFlasher& flasher);

// A path the user gave, typed or from a file dialog ("file://" URL), as an
// absolute local path; empty stays empty.
QString userPath(const QString& pathOrUrl);

} // namespace FirmwareImages
