#include "pictures/scanner.h"

#include <sane/sane.h>
#include <sane/saneopts.h>

#include <QByteArray>
#include <QLibrary>
#include <type_traits>
#include <algorithm>
#include <csignal>
#include <cstring>

namespace tw::scanner {

namespace {

// SANE and the libraries it brings (USB, udev, XML) are loaded the first time a scanner is
// asked for, so the program's start does not pay for them.
struct SaneApi {
    decltype(&::sane_init) init = nullptr;
    decltype(&::sane_exit) exit = nullptr;
    decltype(&::sane_get_devices) get_devices = nullptr;
    decltype(&::sane_open) open = nullptr;
    decltype(&::sane_close) close = nullptr;
    decltype(&::sane_get_option_descriptor) get_option_descriptor = nullptr;
    decltype(&::sane_control_option) control_option = nullptr;
    decltype(&::sane_get_parameters) get_parameters = nullptr;
    decltype(&::sane_start) start = nullptr;
    decltype(&::sane_read) read = nullptr;
    decltype(&::sane_cancel) cancel = nullptr;
    bool ok = false;
};

const SaneApi &api()
{
    static const SaneApi a = [] {
        SaneApi r;
        QLibrary lib(QStringLiteral("sane"), 1);
        lib.setLoadHints(QLibrary::PreventUnloadHint);
        if (!lib.load()) return r;
        auto get = [&lib](auto &fn, const char *name) {
            fn = reinterpret_cast<std::remove_reference_t<decltype(fn)>>(lib.resolve(name));
            return fn != nullptr;
        };
        r.ok = get(r.init, "sane_init") && get(r.exit, "sane_exit") && get(r.get_devices, "sane_get_devices")
            && get(r.open, "sane_open") && get(r.close, "sane_close")
            && get(r.get_option_descriptor, "sane_get_option_descriptor")
            && get(r.control_option, "sane_control_option") && get(r.get_parameters, "sane_get_parameters")
            && get(r.start, "sane_start") && get(r.read, "sane_read") && get(r.cancel, "sane_cancel");
        return r;
    }();
    return a;
}

// SANE is started for each command and stopped after it, so a scanner plugged in later is
// found, and nothing stays open between scans.
class SaneSession {
public:
    SaneSession() { status_ = api().ok ? api().init(nullptr, nullptr) : SANE_STATUS_UNSUPPORTED; }
    ~SaneSession()
    {
        if (status_ == SANE_STATUS_GOOD) api().exit();
    }
    SaneSession(const SaneSession &) = delete;
    SaneSession &operator=(const SaneSession &) = delete;
    bool ok() const { return status_ == SANE_STATUS_GOOD; }

private:
    SANE_Status status_;
};

class DeviceHandle {
public:
    explicit DeviceHandle(SANE_Handle h) : h_(h) {}
    ~DeviceHandle()
    {
        if (h_) api().close(h_);
    }
    DeviceHandle(const DeviceHandle &) = delete;
    DeviceHandle &operator=(const DeviceHandle &) = delete;
    SANE_Handle get() const { return h_; }

private:
    SANE_Handle h_;
};

// Colour when the device offers it: a scan for the picture tab.
void preferColour(SANE_Handle h)
{
    for (SANE_Int i = 1;; ++i) {
        const SANE_Option_Descriptor *d = api().get_option_descriptor(h, i);
        if (!d) return;
        if (!d->name || std::strcmp(d->name, SANE_NAME_SCAN_MODE) != 0) continue;
        if (d->type != SANE_TYPE_STRING || d->constraint_type != SANE_CONSTRAINT_STRING_LIST
            || !SANE_OPTION_IS_SETTABLE(d->cap))
            return;
        for (const SANE_String_Const *s = d->constraint.string_list; s && *s; ++s)
            if (std::strcmp(*s, SANE_VALUE_SCAN_MODE_COLOR) == 0) {
                QByteArray v(std::max<int>(d->size, int(std::strlen(*s)) + 1), '\0');
                std::memcpy(v.data(), *s, std::strlen(*s));
                api().control_option(h, i, SANE_ACTION_SET_VALUE, v.data(), nullptr);
                return;
            }
        return;
    }
}

// A resolution of under 25 dots per inch makes a picture of a few pixels (the test scanner
// starts at a fraction of one): such a device is set to 100, within its range.
void sensibleResolution(SANE_Handle h)
{
    for (SANE_Int i = 1;; ++i) {
        const SANE_Option_Descriptor *d = api().get_option_descriptor(h, i);
        if (!d) return;
        if (!d->name || std::strcmp(d->name, SANE_NAME_SCAN_RESOLUTION) != 0) continue;
        if (!SANE_OPTION_IS_SETTABLE(d->cap) || d->size != sizeof(SANE_Word)) return;
        SANE_Word v = 0;
        if (api().control_option(h, i, SANE_ACTION_GET_VALUE, &v, nullptr) != SANE_STATUS_GOOD) return;
        const bool fixed = d->type == SANE_TYPE_FIXED;
        if (d->type != SANE_TYPE_INT && !fixed) return;
        const double dpi = fixed ? SANE_UNFIX(v) : double(v);
        if (dpi >= 25) return;
        double want = 100;
        if (d->constraint_type == SANE_CONSTRAINT_RANGE && d->constraint.range) {
            const double lo = fixed ? SANE_UNFIX(d->constraint.range->min) : d->constraint.range->min;
            const double hi = fixed ? SANE_UNFIX(d->constraint.range->max) : d->constraint.range->max;
            want = std::clamp(want, lo, hi);
        }
        SANE_Word w = fixed ? SANE_FIX(want) : SANE_Word(want);
        api().control_option(h, i, SANE_ACTION_SET_VALUE, &w, nullptr);
        return;
    }
}

}  // namespace

int statusOfSane(int s)
{
    switch (s) {
    case SANE_STATUS_GOOD:
        return 0;
    case SANE_STATUS_CANCELLED:
        return Cancelled;
    case SANE_STATUS_DEVICE_BUSY:
        return SourceBusy;
    case SANE_STATUS_INVAL:
        return OutOfRange;
    case SANE_STATUS_UNSUPPORTED:
        return UnknownCapability;
    case SANE_STATUS_NO_MEM:
        return NoMemory;
    case SANE_STATUS_ACCESS_DENIED:
        return SourceError;
    default:
        return UnknownFailure;
    }
}

int listDevices(QList<Device> *out)
{
    out->clear();
    SaneSession session;
    if (!session.ok()) return NoSourceManager;
    const SANE_Device **list = nullptr;
    const SANE_Status s = api().get_devices(&list, SANE_TRUE);
    if (s != SANE_STATUS_GOOD) return statusOfSane(s);
    for (int i = 0; list && list[i]; ++i) {
        const SANE_Device *d = list[i];
        Device dev;
        dev.name = QString::fromLocal8Bit(d->name);
        dev.description = QStringLiteral("%1 %2 (%3)")
                              .arg(QString::fromLocal8Bit(d->vendor), QString::fromLocal8Bit(d->model),
                                   QString::fromLocal8Bit(d->type));
        out->append(dev);
    }
    return 0;
}

int scan(const QString &device, QImage *out, int *bits, const std::function<bool()> &keepGoing)
{
    // A backend that hands the data over through a pipe gets SIGPIPE when a scan is cancelled
    // part way; that must end the scan, never the program.
    ::signal(SIGPIPE, SIG_IGN);
    SaneSession session;
    if (!session.ok()) return NoSourceManager;
    QByteArray name = device.toLocal8Bit();
    if (name.isEmpty()) {
        const SANE_Device **list = nullptr;
        if (api().get_devices(&list, SANE_TRUE) != SANE_STATUS_GOOD || !list || !list[0]) return NoDataSource;
        name = list[0]->name;
    }
    SANE_Handle raw = nullptr;
    SANE_Status s = api().open(name.constData(), &raw);
    if (s != SANE_STATUS_GOOD) return s == SANE_STATUS_INVAL ? NoDataSource : statusOfSane(s);
    DeviceHandle h(raw);
    preferColour(h.get());
    sensibleResolution(h.get());

    s = api().start(h.get());
    if (s != SANE_STATUS_GOOD) {
        api().cancel(h.get());
        return statusOfSane(s);
    }
    // One frame for grey or colour; three for a scanner that sends red, green, blue apart.
    QImage img;
    int depth = 8;
    bool colour = false;
    QByteArray buffer(64 * 1024, Qt::Uninitialized);
    for (;;) {
        SANE_Parameters p;
        s = api().get_parameters(h.get(), &p);
        if (s != SANE_STATUS_GOOD) {
            api().cancel(h.get());
            return statusOfSane(s);
        }
        if (p.lines <= 0 || p.pixels_per_line <= 0 || p.bytes_per_line <= 0) {
            api().cancel(h.get());
            return UnknownCapability;
        }
        depth = p.depth;
        if (img.isNull()) {
            img = QImage(p.pixels_per_line, p.lines, QImage::Format_RGB32);
            if (img.isNull()) {
                api().cancel(h.get());
                return NoMemory;
            }
            img.fill(Qt::white);
        }
        QByteArray data;
        data.reserve(qsizetype(p.bytes_per_line) * p.lines);
        for (;;) {
            if (keepGoing && !keepGoing()) {
                api().cancel(h.get());
                return Cancelled;
            }
            SANE_Int got = 0;
            s = api().read(h.get(), reinterpret_cast<SANE_Byte *>(buffer.data()), SANE_Int(buffer.size()),
                           &got);
            if (s == SANE_STATUS_EOF) break;
            if (s != SANE_STATUS_GOOD) {
                api().cancel(h.get());
                return statusOfSane(s);
            }
            data.append(buffer.constData(), got);
        }
        const int lines = std::min<int>(p.lines, int(data.size() / p.bytes_per_line));
        for (int y = 0; y < lines && y < img.height(); ++y) {
            const uchar *line =
                reinterpret_cast<const uchar *>(data.constData()) + qsizetype(y) * p.bytes_per_line;
            QRgb *px = reinterpret_cast<QRgb *>(img.scanLine(y));
            for (int x = 0; x < p.pixels_per_line && x < img.width(); ++x) {
                auto sample = [&](int channel, int channels) -> int {
                    if (p.depth == 1) {
                        const int bit = (line[x / 8] >> (7 - x % 8)) & 1;
                        return bit ? 0 : 255;  // SANE's 1-bit data: 1 is black
                    }
                    if (p.depth == 16)
                        return line[(x * channels + channel) * 2 + 1];  // little endian, high byte
                    return line[x * channels + channel];
                };
                switch (p.format) {
                case SANE_FRAME_RGB:
                    colour = true;
                    px[x] = qRgb(sample(0, 3), sample(1, 3), sample(2, 3));
                    break;
                case SANE_FRAME_RED:
                    colour = true;
                    px[x] = qRgb(sample(0, 1), qGreen(px[x]), qBlue(px[x]));
                    break;
                case SANE_FRAME_GREEN:
                    colour = true;
                    px[x] = qRgb(qRed(px[x]), sample(0, 1), qBlue(px[x]));
                    break;
                case SANE_FRAME_BLUE:
                    colour = true;
                    px[x] = qRgb(qRed(px[x]), qGreen(px[x]), sample(0, 1));
                    break;
                default: {
                    const int v = sample(0, 1);
                    px[x] = qRgb(v, v, v);
                }
                }
            }
        }
        if (p.last_frame) break;
        s = api().start(h.get());
        if (s != SANE_STATUS_GOOD) {
            api().cancel(h.get());
            return statusOfSane(s);
        }
    }
    api().cancel(h.get());
    *out = img;
    if (bits) *bits = colour ? 24 : (depth == 1 ? 1 : 8);
    return 0;
}

}  // namespace tw::scanner
