#pragma once

#include "math/KalviDspVector.h"
#include "text/KalviDspString.h"

namespace vlk {

// A normalised path: absolute, "~" expanded, no trailing "/" except for the root. An empty path is a valid
// File that exists nowhere. The operations go to the file system at each call; nothing is cached.
class File
{
public:
    File();
    File(const String& path);
    File(const char* path);

    // The path separator, made on first use.
    static const String& separator();
    static File getCurrentWorkingDirectory();
    // HOME, else home, else the current working directory.
    static File getHomeDirectory();

    const String& getFullPathName() const noexcept { return fullPath; }
    // Text behind the last "/"; the whole path when there is none.
    String getFileName() const;
    // From the last "." on, the dot included; empty when that dot is not in the last component.
    String getFileExtension() const;
    // extensions: one or several, separated by blanks, with or without the dot, any case. An empty text asks
    // whether the path has no extension at all.
    bool hasFileExtension(const String& extensions) const;
    bool hasAnyFileExtension(const Vector<String>& extensions) const;

    bool exists() const;
    // A path that exists and is no directory; one that stat cannot look at counts as a file.
    bool existsAsFile() const;
    bool isDirectory() const;
    String getSizeText() const;
    // The path itself when it holds no "/".
    File getParentDirectory() const;
    // Leading "." and ".." components walk from this path; an absolute or "~" path stands alone.
    File getChildFile(const String& relativePath) const;
    // For a path that does not exist yet, the answer of the nearest parent.
    bool hasWriteAccess() const;

    // True when nothing is left at the path, including when there was nothing.
    bool deleteFile() const;
    bool moveToTrash() const;
    // True when the file is at destination afterwards; a file there before is deleted first.
    bool moveFileTo(const File& destination) const;
    // A byte copy with the permission bits of the source; false when destination exists already.
    bool copyFileTo(const File& destination) const;
    // Creates the missing folders of the path; throws when the path has no parent to start from.
    bool createDirectory() const;
    bool createParentDirectory() const;
    // Clears the way for a file written whole: an existing file goes to the Trash when overwrite is set.
    // Throws when the file exists and may not be replaced, cannot be moved, or is a folder.
    bool prepareForWriting(bool overwrite) const;

private:
    struct AlreadyNormalised
    {
    };
    File(const String& normalisedPath, AlreadyNormalised);

    static String normalise(const String& path);
    static String expandHome(const String& path);

    String fullPath;
};

} // namespace vlk
