// Start-up time and memory of the main window against two plain Qt programs, measured in the
// same run, alternating, so the machine's load falls on all three alike:
//   - the reference: a QMainWindow with the same kinds of widgets the main window shows at
//     start (menus, one toolbar, eight tabs, a folder tree and a file list);
//   - the bare program: one empty QMainWindow.
// Each probe prints "painted <KiB>" at its first paint and exits; the time is taken from
// starting the process to that line. Prints the medians and the ratios of the main window to
// the two others.
//
// The probes run with a temporary HOME of their own (XDG folders inside it), so the user's
// files are never read or touched. Its program folder holds Options.INI and Colors.INI as the
// program itself writes them, so the main window starts as on a set-up machine and never
// stops at the boxes of a first start. The folder is removed at the end.
#include "core/options_store.h"

#include <QDir>
#include <QString>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

// A probe that has not painted after this long is taken as hung.
constexpr int kProbeTimeoutMs = 60000;

struct Sample {
    double ms = 0;
    long kib = 0;
};

// Starts one probe, waits for its "painted" line and returns the time and memory it gave.
bool runOnce(const std::string &program, Sample *out)
{
    int fds[2];
    if (pipe(fds) != 0) return false;
    const auto t0 = std::chrono::steady_clock::now();
    const pid_t pid = fork();
    if (pid < 0) {
        close(fds[0]);
        close(fds[1]);
        return false;
    }
    if (pid == 0) {
        dup2(fds[1], STDOUT_FILENO);
        const int null = open("/dev/null", O_WRONLY);
        if (null >= 0) dup2(null, STDERR_FILENO);
        close(fds[0]);
        close(fds[1]);
        execl(program.c_str(), program.c_str(), static_cast<char *>(nullptr));
        _exit(127);
    }
    close(fds[1]);
    std::string text;
    bool painted = false;
    for (;;) {
        const auto waited =
            std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - t0)
                .count();
        if (waited >= kProbeTimeoutMs) break;
        pollfd p{fds[0], POLLIN, 0};
        const int r = poll(&p, 1, static_cast<int>(kProbeTimeoutMs - waited));
        if (r < 0 && errno == EINTR) continue;
        if (r <= 0) break;
        char buf[256];
        const ssize_t n = read(fds[0], buf, sizeof buf);
        if (n <= 0) break;
        text.append(buf, static_cast<size_t>(n));
        const size_t at = text.find("painted ");
        if (at != std::string::npos && text.find('\n', at) != std::string::npos) {
            out->ms =
                std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count();
            painted = std::sscanf(text.c_str() + at, "painted %ld", &out->kib) == 1;
            break;
        }
    }
    close(fds[0]);
    if (!painted) kill(pid, SIGKILL);
    int status = 0;
    waitpid(pid, &status, 0);
    return painted;
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    if (v.empty()) return 0;
    const size_t m = v.size() / 2;
    return v.size() % 2 ? v[m] : (v[m - 1] + v[m]) / 2;
}

// The folder this program was started from, where the build puts the probes too.
std::string ownFolder()
{
    std::error_code ec;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", ec);
    return ec ? std::string(".") : self.parent_path().string();
}

// Writes Options.INI and Colors.INI with the program's own defaults into the program folder.
bool writeSettings(const QString &programDir)
{
    if (!QDir().mkpath(programDir)) return false;
    tw::ColorSettings colors;
    tw::SetDefaultColors(colors);
    tw::OptionSettings options;
    tw::SetDefaultOptions(options, programDir);
    return tw::SaveColors(colors, programDir).ok && tw::SaveOptions(options, programDir).ok;
}

struct Probe {
    const char *what;
    std::string program;
    std::vector<double> ms, mib;
};

}  // namespace

int main(int argc, char **argv)
{
    if (argc > 1 && (std::strcmp(argv[1], "-h") == 0 || std::strcmp(argv[1], "--help") == 0)) {
        std::printf("usage: startup_bench [main-window-probe reference-probe bare-probe [runs]]\n");
        return 0;
    }
    const std::string dir = ownFolder();
    Probe probes[3] = {
        {"main window", argc > 1 ? argv[1] : dir + "/startup_probe", {}, {}},
        {"reference", argc > 2 ? argv[2] : dir + "/reference_probe", {}, {}},
        {"bare", argc > 3 ? argv[3] : dir + "/bare_probe", {}, {}},
    };
    const int runs = argc > 4 ? std::atoi(argv[4]) : 10;
    if (runs < 1) {
        std::fprintf(stderr, "runs must be 1 or more\n");
        return 2;
    }
    for (Probe &p : probes) {
        if (access(p.program.c_str(), X_OK) != 0) {
            std::fprintf(stderr, "cannot run %s\n", p.program.c_str());
            return 2;
        }
    }

    // The temporary HOME; like the tests' HOME, its path holds no dot.
    char tmpl[] = "/tmp/twbenchXXXXXX";
    if (!mkdtemp(tmpl)) {
        std::fprintf(stderr, "cannot make a temporary HOME: %s\n", std::strerror(errno));
        return 1;
    }
    const std::string home = tmpl;
    const std::string share = home + "/share";
    setenv("HOME", home.c_str(), 1);
    setenv("XDG_DATA_HOME", share.c_str(), 1);
    setenv("XDG_CACHE_HOME", (home + "/cache").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (home + "/config").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", (home + "/run").c_str(), 1);
    std::filesystem::create_directories(home + "/run");
    std::filesystem::permissions(home + "/run", std::filesystem::perms::owner_all);
    const QString programDir = QString::fromStdString(share) + QStringLiteral("/tarnwick");

    int rc = 0;
    // The first round warms the caches (and fills the program folder) and is not counted.
    for (int i = 0; i < runs + 1 && rc == 0; ++i) {
        // Every run starts from the same settings files, whatever the one before left.
        if (!writeSettings(programDir)) {
            std::fprintf(stderr, "cannot write the settings files in %s\n", qPrintable(programDir));
            rc = 1;
            break;
        }
        for (Probe &p : probes) {
            Sample s;
            if (!runOnce(p.program, &s)) {
                std::fprintf(stderr, "%s (%s) did not paint\n", p.what, p.program.c_str());
                rc = 1;
                break;
            }
            if (i > 0) {
                p.ms.push_back(s.ms);
                p.mib.push_back(s.kib / 1024.0);
            }
        }
    }
    std::error_code ec;
    std::filesystem::remove_all(home, ec);
    if (rc != 0) return rc;

    const double t[3] = {median(probes[0].ms), median(probes[1].ms), median(probes[2].ms)};
    const double m[3] = {median(probes[0].mib), median(probes[1].mib), median(probes[2].mib)};
    std::printf("medians of %d alternating runs each\n", runs);
    std::printf("%-32s %12s %12s %12s %16s %12s\n", "", "main window", "reference", "bare", "main/reference",
                "main/bare");
    std::printf("%-32s %9.1f ms %9.1f ms %9.1f ms %16.2f %12.2f\n", "process start to first paint", t[0],
                t[1], t[2], t[0] / t[1], t[0] / t[2]);
    std::printf("%-32s %8.1f MiB %8.1f MiB %8.1f MiB %16.2f %12.2f\n", "resident memory at first paint", m[0],
                m[1], m[2], m[0] / m[1], m[0] / m[2]);
    return 0;
}
