// Measures how long programs take from their start until a window with a given title is mapped, and
// how much memory they hold then. The programs run in turn, so that both meet the same machine.
//
// startup_timer RUNS TITLE PROGRAM TITLE PROGRAM: prints each one's median and the first one's
// share of the second.

#include <xcb/xcb.h>

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
template<typename T>
using Reply = std::unique_ptr<T, Free>;

[[noreturn]] void fail(const std::string& reason) {
    std::fprintf(stderr, "startup_timer: %s\n", reason.c_str());
    std::exit(1);
}

class Display {
public:
    Display()
        : m_connection(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(m_connection))
            fail("no display");
        const uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        xcb_change_window_attributes(m_connection, screen->root, XCB_CW_EVENT_MASK, &events);
        xcb_flush(m_connection);
    }
    ~Display() { xcb_disconnect(m_connection); }

    void waitForWindow(const std::string& title) {
        constexpr int longestWait = 30000; // milliseconds
        pollfd input{xcb_get_file_descriptor(m_connection), POLLIN, 0};
        for (;;) {
            while (Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
                if (mapsWindow(*event, title))
                    return;
            }
            if (poll(&input, 1, longestWait) <= 0)
                fail("no window titled " + title);
        }
    }

    void forgetEvents() {
        while (Reply<xcb_generic_event_t>{xcb_poll_for_event(m_connection)}) {
        }
    }

private:
    bool mapsWindow(const xcb_generic_event_t& event, const std::string& title) {
        constexpr uint8_t sentBit = 0x80;
        if ((event.response_type & ~sentBit) != XCB_MAP_NOTIFY)
            return false;
        const auto& map = reinterpret_cast<const xcb_map_notify_event_t&>(event);
        return titleOf(map.window).starts_with(title);
    }

    std::string titleOf(xcb_window_t window) {
        constexpr uint32_t words = 256;
        const auto cookie = xcb_get_property(m_connection, 0, window, XCB_ATOM_WM_NAME,
                                             XCB_GET_PROPERTY_TYPE_ANY, 0, words);
        const Reply<xcb_get_property_reply_t> reply{
            xcb_get_property_reply(m_connection, cookie, nullptr)};
        if (!reply)
            return {};
        return {static_cast<const char*>(xcb_get_property_value(reply.get())),
                size_t(xcb_get_property_value_length(reply.get()))};
    }

    xcb_connection_t* m_connection;
};

long residentKilobytes(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmRSS:"))
            return std::atol(line.c_str() + 6);
    }
    fail("the program ended before it was measured");
}

struct Program {
    std::string title;
    std::string path;
    std::vector<double> milliseconds;
    std::vector<double> megabytes;
};

void measure(Program& program, Display& display) {
    display.forgetEvents();
    const auto start = Clock::now();
    const pid_t process = fork();
    if (process == 0) {
        execlp(program.path.c_str(), program.path.c_str(), nullptr);
        _exit(127);
    }
    display.waitForWindow(program.title);
    const std::chrono::duration<double, std::milli> taken = Clock::now() - start;
    std::this_thread::sleep_for(std::chrono::milliseconds(500)); // until all is painted
    program.milliseconds.push_back(taken.count());
    program.megabytes.push_back(double(residentKilobytes(process)) / 1024);
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 6)
        fail("RUNS TITLE PROGRAM TITLE PROGRAM");
    const int runs = std::max(1, std::atoi(argv[1]));
    Program programs[] = {{argv[2], argv[3], {}, {}}, {argv[4], argv[5], {}, {}}};
    Display display;
    for (int run = 0; run < runs; ++run) {
        for (Program& program : programs)
            measure(program, display);
    }
    for (const Program& program : programs)
        std::printf("%-28s %7.1f ms %7.1f MB\n", program.title.c_str(),
                    median(program.milliseconds), median(program.megabytes));
    std::printf("%-28s %7.2f    %7.2f\n", "share",
                median(programs[0].milliseconds) / median(programs[1].milliseconds),
                median(programs[0].megabytes) / median(programs[1].megabytes));
}
