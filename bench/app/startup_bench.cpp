// Start-up time and memory of the main window against a bare Qt program that shows one
// empty QMainWindow, both measured in the same run, alternating, so the machine's load
// falls on both alike. Prints medians and the ratios.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

static bool runOnce(const std::string &cmd, double *ms, long *kib)
{
    const auto t0 = std::chrono::steady_clock::now();
    FILE *p = popen(cmd.c_str(), "r");
    if (!p) return false;
    char line[256] = {};
    bool ok = false;
    while (std::fgets(line, sizeof line, p)) {
        if (std::sscanf(line, "painted %ld", kib) == 1) {
            ok = true;
            *ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count();
        }
    }
    pclose(p);
    return ok;
}

static double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

int main(int argc, char **argv)
{
    const std::string probe = argc > 1 ? argv[1] : "./startup_probe";
    const std::string bare = argc > 2 ? argv[2] : "./bare_probe";
    const int runs = argc > 3 ? std::atoi(argv[3]) : 10;
    std::vector<double> tMain, tBare, mMain, mBare;
    for (int i = 0; i < runs + 1; ++i) {
        double ms = 0;
        long kib = 0;
        const bool a = runOnce(probe + " 2>/dev/null", &ms, &kib);
        if (a && i > 0) tMain.push_back(ms), mMain.push_back(kib);  // the first run warms the caches
        const bool b = runOnce(bare + " 2>/dev/null", &ms, &kib);
        if (b && i > 0) tBare.push_back(ms), mBare.push_back(kib);
        if (!a || !b) {
            std::fprintf(stderr, "a probe did not paint\n");
            return 1;
        }
    }
    const double tm = median(tMain), tb = median(tBare), mm = median(mMain), mb = median(mBare);
    std::printf("runs: %d each\n", runs);
    std::printf("time to first paint: main window %.1f ms, bare QMainWindow %.1f ms, ratio %.2f\n", tm, tb, tm / tb);
    std::printf("resident memory at first paint: main window %.1f MiB, bare %.1f MiB, ratio %.2f\n",
                mm / 1024, mb / 1024, mm / mb);
    return 0;
}
