// Calls the message functions in a process of its own, because they may end the process:
//
//   dico_child message <key> <text>   dico_message with one argument
//   dico_child exit <key> <text>      the same with the exit on errors switched on
//   dico_child callback <key> <text>  the same with a callback that prints "<" and the text
//   dico_child reset <key> <text>     the same with both, and dico_init after them
//   dico_child available             prints dico_is_available, without a first message
//   dico_child is_error <text>        prints dico_is_error after a first message
//   dico_child open <path>            prints the result of openRaster; if the process is root's, it first
//   becomes
//                                     a user without rights

#include "messages/dico.h"
#include "messages/rasterheader.h"

#include <cstdio>
#include <string>
#include <unistd.h>

namespace
{

void onMessage(const char *text)
{
    std::printf("<%s\n", text);
}

} // namespace

int main(int argc, char *argv[])
{
    const std::string what = argc > 1 ? argv[1] : "";
    const char *first = argc > 2 ? argv[2] : "";
    const char *second = argc > 3 ? argv[3] : "";
    if (what == "exit" || what == "callback" || what == "reset")
        dico_init();
    if (what == "exit" || what == "reset")
        dico_set_exit_on_error(1);
    if (what == "callback" || what == "reset")
        dico_set_callback(onMessage);
    if (what == "reset")
        dico_init();
    if (what == "open") {
        if (getuid() == 0 && setuid(65534) != 0)
            return 3;
        const int descriptor = openRaster(first);
        std::printf("%s\n", descriptor >= 0 ? "opened" : std::to_string(descriptor).c_str());
    } else if (what == "available") {
        std::printf("%d\n", dico_is_available());
    } else if (what == "is_error") {
        dico_message("nothing");
        std::printf("%d\n", dico_is_error(first));
    } else {
        dico_message(first, second);
    }
    std::puts("end");
    return 7;
}
