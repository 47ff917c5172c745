// Stands in for an external tool. Carries out its arguments one after another:
//
//   out <text>      writes the text on standard output, \n for a line feed
//   err <text>      the same on standard error
//   file <path>     creates a file of a few bytes
//   flood <bytes>   writes that many bytes of progress-like lines on standard output
//   errflood <bytes> the same on standard error
//   wait <ms>       sleeps
//   deaf            ignores SIGTERM and SIGINT from here on
//   crash           ends by a signal
//   exit <code>     ends

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

namespace
{

std::string unescaped(std::string text)
{
    for (auto at = text.find("\\n"); at != std::string::npos; at = text.find("\\n"))
        text.replace(at, 2, 1, '\n');
    return text;
}

void flood(std::FILE *stream, long bytes)
{
    const std::string line = "0...10...20...30...40...50...60...70...80...90...\n";
    for (long written = 0; written < bytes; written += static_cast<long>(line.size()))
        std::fputs(line.c_str(), stream);
    std::fflush(stream);
}

void print(std::FILE *stream, const std::string &text)
{
    std::fputs(unescaped(text).c_str(), stream);
    std::fflush(stream);
}

} // namespace

int main(int argc, char *argv[])
{
    for (int index = 1; index < argc; ++index) {
        const std::string word = argv[index];
        const auto next = [&] { return index + 1 < argc ? std::string(argv[++index]) : std::string(); };
        if (word == "out")
            print(stdout, next());
        else if (word == "err")
            print(stderr, next());
        else if (word == "file")
            std::ofstream(next()) << "half a product";
        else if (word == "flood")
            flood(stdout, std::stol(next()));
        else if (word == "errflood")
            flood(stderr, std::stol(next()));
        else if (word == "wait")
            std::this_thread::sleep_for(std::chrono::milliseconds(std::stol(next())));
        else if (word == "deaf") {
            std::signal(SIGTERM, SIG_IGN);
            std::signal(SIGINT, SIG_IGN);
        } else if (word == "crash")
            std::abort();
        else if (word == "exit")
            return std::stoi(next());
    }
    return 0;
}
