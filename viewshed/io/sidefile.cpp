#include "viewshed/io/sidefile.h"

#include "viewshed/problem.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>

namespace viewshed
{

namespace
{

namespace fs = std::filesystem;

} // namespace

SideFile::SideFile(std::string path)
    : m_path(std::move(path))
{
    std::error_code error;
    if (fs::exists(m_path, error) && !fs::is_regular_file(m_path, error))
        throw Problem(m_path + " is not a regular file, so it cannot be replaced; choose another name.");
    const fs::path file(m_path);
    const std::string suffix = file.extension().string();
    for (int number = 0; m_temporary.empty() || fs::exists(m_temporary, error); ++number)
        m_temporary =
            (file.parent_path() / (file.stem().string() + ".part" + std::to_string(number) + suffix)).string();
}

SideFile::~SideFile()
{
    std::error_code ignored;
    // A database that was interrupted leaves its journal.
    for (const char *suffix : {"", "-journal", "-wal", "-shm"})
        fs::remove(m_temporary + suffix, ignored);
}

void SideFile::keep()
{
    std::error_code error;
    fs::rename(m_temporary, m_path, error);
    if (error)
        throw Problem("The file " + m_path + " cannot be written: " + error.message());
}

SideText::SideText(const std::string &path)
    : m_file(path)
    , m_stream(std::fopen(m_file.temporaryPath().c_str(), "wb"), std::fclose)
    , m_path(path)
{
    check(m_stream != nullptr);
}

void SideText::write(const std::string &text)
{
    check(std::fwrite(text.data(), 1, text.size(), m_stream.get()) == text.size());
}

void SideText::keep()
{
    check(std::fclose(m_stream.release()) == 0);
    m_file.keep();
}

void SideText::check(bool succeeded) const
{
    if (!succeeded)
        throw Problem("The file " + m_path + " cannot be written: " + std::strerror(errno));
}

std::string digitsOf(double number)
{
    std::array<char, 32> digits{};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return {digits.data(), end};
}

std::string csvField(const std::string &text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string field = "\"";
    for (const char c : text)
        field += c == '"' ? "\"\"" : std::string(1, c);
    return field + '"';
}

} // namespace viewshed
