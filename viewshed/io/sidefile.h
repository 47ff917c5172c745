#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace viewshed
{

/// A file that a run writes beside its product. It is written under another name in the same folder and takes
/// its own name, and the place of an older file, only when the run has succeeded; else it is deleted.
class SideFile
{
public:
    /// `path` is that of the finished file; nothing is written yet. Throws Problem if it is a folder or another
    /// thing that is no regular file.
    explicit SideFile(std::string path);
    ~SideFile();
    SideFile(const SideFile &) = delete;
    SideFile &operator=(const SideFile &) = delete;

    /// The name under which the file is written; it has the same suffix.
    const std::string &temporaryPath() const { return m_temporary; }
    /// Moves the file, which is complete and closed, to its own name. Throws Problem with the system's reason.
    void keep();

private:
    std::string m_path;
    std::string m_temporary;
};

/// A text file that is written piece by piece, as a SideFile.
class SideText
{
public:
    /// Throws Problem if the file cannot be created.
    explicit SideText(const std::string &path);

    /// Throws Problem if the text cannot be written.
    void write(const std::string &text);
    /// Closes the file and keeps it. Throws Problem.
    void keep();

private:
    void check(bool succeeded) const;

    SideFile m_file;
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> m_stream;
    std::string m_path;
};

/// The number in as few digits as identify it, with a point whatever the locale.
std::string digitsOf(double number);
/// The text as a field of a CSV file: in quotes where it needs them.
std::string csvField(const std::string &text);

} // namespace viewshed
