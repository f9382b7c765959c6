#include "slideshow/effects.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <numeric>

namespace tw::slides {

namespace {

constexpr double Pi = 3.14159265358979323846;
enum Dir { LR = 0, RL = 1, TB = 2, BT = 3 };
enum Corner { LT = 0, LB = 1, RT = 2, RB = 3 };

// The part of R a straight edge moving in Dir has passed at T.
QRect wipe(const QRect &r, int dir, double t)
{
    t = std::clamp(t, 0.0, 1.0);
    const int w = int(std::lround(r.width() * t)), h = int(std::lround(r.height() * t));
    switch (dir) {
    case RL:
        return QRect(r.right() + 1 - w, r.top(), w, r.height());
    case TB:
        return QRect(r.left(), r.top(), r.width(), h);
    case BT:
        return QRect(r.left(), r.bottom() + 1 - h, r.width(), h);
    default:
        return QRect(r.left(), r.top(), w, r.height());
    }
}

// The part of R a diagonal edge starting at Corner has passed at T.
QPainterPath diag(const QRectF &r, int corner, double t)
{
    t = std::clamp(t, 0.0, 1.0);
    const double s = 2 * t;
    QPolygonF poly;
    if (s <= 1) poly << QPointF(0, 0) << QPointF(s, 0) << QPointF(0, s);
    else poly << QPointF(0, 0) << QPointF(1, 0) << QPointF(1, s - 1) << QPointF(s - 1, 1) << QPointF(0, 1);
    const bool fromRight = corner == RT || corner == RB;
    const bool fromBottom = corner == LB || corner == RB;
    for (QPointF &p : poly) {
        const double x = fromRight ? r.right() - p.x() * r.width() : r.left() + p.x() * r.width();
        const double y = fromBottom ? r.bottom() - p.y() * r.height() : r.top() + p.y() * r.height();
        p = QPointF(x, y);
    }
    QPainterPath path;
    path.addPolygon(poly);
    path.closeSubpath();
    return path;
}

QPainterPath pie(const QPointF &c, double radius, double startDeg, double sweepDeg)
{
    QPainterPath p;
    p.moveTo(c);
    p.arcTo(QRectF(c.x() - radius, c.y() - radius, 2 * radius, 2 * radius), startDeg, sweepDeg);
    p.closeSubpath();
    return p;
}

QPainterPath ellipse(const QPointF &c, double rx, double ry)
{
    QPainterPath p;
    p.addEllipse(c, rx, ry);
    return p;
}

// The four quadrants TL, TR, BL, BR.
std::array<QRect, 4> quadrants(const QRect &r)
{
    const int hw = r.width() / 2, hh = r.height() / 2;
    return {QRect(0, 0, hw, hh), QRect(hw, 0, r.width() - hw, hh), QRect(0, hh, hw, r.height() - hh),
            QRect(hw, hh, r.width() - hw, r.height() - hh)};
}

double ph1(double t) { return std::clamp(2 * t, 0.0, 1.0); }
double ph2(double t) { return std::clamp(2 * t - 1, 0.0, 1.0); }

// The 8×8 ordered-dither thresholds.
constexpr int Bayer[8][8] = {{0, 32, 8, 40, 2, 34, 10, 42},  {48, 16, 56, 24, 50, 18, 58, 26},
                             {12, 44, 4, 36, 14, 46, 6, 38}, {60, 28, 52, 20, 62, 30, 54, 22},
                             {3, 35, 11, 43, 1, 33, 9, 41},  {51, 19, 59, 27, 49, 17, 57, 25},
                             {15, 47, 7, 39, 13, 45, 5, 37}, {63, 31, 55, 23, 61, 29, 53, 21}};

}  // namespace

const std::vector<EffectClass> &effectClasses()
{
    static const std::vector<EffectClass> c = {
        {QStringLiteral("None"), 1000, 1001},           {QStringLiteral("Linear Wipe"), 2000, 2554},
        {QStringLiteral("Rectangle"), 3000, 3005},      {QStringLiteral("Clock"), 4000, 4029},
        {QStringLiteral("Push"), 5000, 5263},           {QStringLiteral("Slide"), 6000, 6525},
        {QStringLiteral("Roll"), 7000, 7263},           {QStringLiteral("Rotate"), 8000, 8259},
        {QStringLiteral("Zoom"), 9000, 9001},           {QStringLiteral("Drip"), 10000, 10003},
        {QStringLiteral("Blinds"), 11000, 11006},       {QStringLiteral("Random"), 12000, 12009},
        {QStringLiteral("Checkerboard"), 13000, 13007}, {QStringLiteral("Blocks"), 14000, 14007},
        {QStringLiteral("Circle"), 15000, 15035},       {QStringLiteral("Ellipse"), 16000, 16035},
    };
    return c;
}

int effectClassOf(int effect)
{
    const auto &c = effectClasses();
    for (size_t i = 0; i < c.size(); ++i)
        if (effect >= c[i].first && effect <= c[i].last) return int(i);
    return -1;
}

int drawnEffect(int effect)
{
    if (effect == 1001) return NoEffect;
    return effectClassOf(effect) < 0 ? 2000 : effect;
}

QString effectName(int e)
{
    static const char *const straight[] = {"L", "R", "T", "B"};
    static const char *const corner[] = {"LT", "LB", "RT", "RB"};
    auto quad = [](int n, const char *const *names) {
        return QStringLiteral("Quadrants %1 %2 %3 %4")
            .arg(QLatin1String(names[(n / 64) % 4]), QLatin1String(names[(n / 16) % 4]),
                 QLatin1String(names[(n / 4) % 4]), QLatin1String(names[n % 4]));
    };
    static const char *const wipes[] = {"L to R",
                                        "R to L",
                                        "T to B",
                                        "B to T",
                                        "LT to RB",
                                        "LB to RT",
                                        "RT to LB",
                                        "RB to LT",
                                        "Bands H L-R/L-R",
                                        "Bands V T-B/T-B",
                                        "Bands H L-R/R-L",
                                        "Bands V T-B/B-T",
                                        "Bands V L-R/L-R",
                                        "Bands V R-L/R-L",
                                        "Bands H T-B/T-B",
                                        "Bands H B-T/B-T",
                                        "Bands V L-R/R-L",
                                        "Bands V R-L/L-R",
                                        "Bands H T-B/B-T",
                                        "Bands H B-T/T-B",
                                        "H alternate L-R and R-L",
                                        "V alternate T-B and B-T",
                                        "V sides to C",
                                        "V C outwards",
                                        "H T and B to C",
                                        "H C outwards",
                                        "V in then out",
                                        "V out then in",
                                        "H in then out",
                                        "H out then in",
                                        "LT and RB to C",
                                        "LB and RT to C",
                                        "C to LT and RB",
                                        "C to LB and RT",
                                        "LB and RB to T",
                                        "LT and RT to B",
                                        "RT and RB to L",
                                        "LT and LB to R",
                                        "Left half T-B, right half B-T",
                                        "Top half L-R, bottom half R-L",
                                        "Four corners outwards",
                                        "C to L and R, then T and B",
                                        "T and B, then L and R, to C"};
    static const char *const moves[] = {"R to L", "L to R", "B to T", "T to B"};
    static const char *const halves[] = {"Halves C outwards H", "Halves to C H", "Halves C outwards V",
                                         "Halves to C V"};
    static const char *const centres[] = {"C", "L", "R", "T", "B"};
    static const char *const modes[] = {"in-in", "out-out", "in-out", "out-in"};
    switch (effectClassOf(e)) {
    case 0:
        return QStringLiteral("None");
    case 1:
        if (e <= 2042) return QLatin1String(wipes[e - 2000]);
        if (e <= 2298) return quad(e - 2043, straight);
        return QStringLiteral("Diagonal ") + quad(e - 2299, corner);
    case 2: {
        static const char *const r[] = {"Frame to C",         "Grow from C",       "Interlaced in-in",
                                        "Interlaced out-out", "Interlaced in-out", "Interlaced out-in"};
        return QLatin1String(r[e - 3000]);
    }
    case 3:
        return QStringLiteral("Clock %1").arg(e - 4000 + 1);
    case 4:
        if (e <= 5003) return QLatin1String(moves[e - 5000]);
        if (e <= 5007) return QLatin1String(halves[e - 5004]);
        return quad(e - 5008, straight);
    case 5: {
        static const char *const s[] = {"R to L",           "L to R",   "B to T",
                                        "T to B",           "LT to RB", "RT to LB",
                                        "LB to RT",         "RB to LT", "Bands H both ways",
                                        "Bands V both ways"};
        if (e <= 6009) return QLatin1String(s[e - 6000]);
        if (e <= 6013) return QLatin1String(halves[e - 6010]);
        if (e <= 6269) return quad(e - 6014, straight);
        return QStringLiteral("Diagonal ") + quad(e - 6270, corner);
    }
    case 6:
        if (e <= 7003) return QLatin1String(wipes[e - 7000]);
        if (e <= 7007) return QLatin1String(halves[e - 7004]);
        return quad(e - 7008, straight);
    case 7:
        if (e <= 8003) return QLatin1String(wipes[e - 8000]);
        return quad(e - 8004, straight);
    case 8:
        return e == 9000 ? QStringLiteral("Towards C") : QStringLiteral("Out from C");
    case 9:
        return QLatin1String(wipes[e - 10000 == 0 ? 2 : e - 10000 == 1 ? 3 : e - 10000 == 2 ? 0 : 1]);
    case 10: {
        static const char *const b[] = {"Horizontal T to B", "Vertical L to R", "Growing L to R",
                                        "Growing R to L",    "Growing T to B",  "Growing B to T",
                                        "Both directions"};
        return QLatin1String(b[e - 11000]);
    }
    case 11: {
        static const char *const r[] = {"Bars R to L",   "Bars L to R",  "Bars B to T",   "Bars T to B",
                                        "Lines",         "Dissolve",     "Blocks R to L", "Blocks L to R",
                                        "Blocks B to T", "Blocks T to B"};
        return QLatin1String(r[e - 12000]);
    }
    case 12: {
        static const char *const c[] = {"T-B then T-B", "B-T then B-T", "L-R then L-R", "R-L then R-L",
                                        "T-B then B-T", "B-T then T-B", "L-R then R-L", "R-L then L-R"};
        return QLatin1String(c[e - 13000]);
    }
    case 13: {
        static const char *const b[] = {"T to B",          "B to T",           "L to R",
                                        "R to L",          "Spiral CW to C",   "Spiral CW from C",
                                        "Spiral CCW to C", "Spiral CCW from C"};
        return QLatin1String(b[e - 14000]);
    }
    case 14:
    case 15: {
        const int n = e % 1000;
        if (n < 10)
            return QStringLiteral("%1 %2").arg(QLatin1String(centres[n / 2]),
                                               n % 2 ? QStringLiteral("Out") : QStringLiteral("In"));
        if (n < 30)
            return QStringLiteral("Interlaced %1 %2")
                .arg(QLatin1String(centres[(n - 10) / 4]), QLatin1String(modes[(n - 10) % 4]));
        static const char *const x[] = {"L and R interlaced", "T and B interlaced", "L and R out",
                                        "L and R in",         "T and B out",        "T and B in"};
        return QLatin1String(x[n - 30]);
    }
    default:
        return QStringLiteral("Wipe");
    }
}

// ------------------------------------------------------------------------------ the pass

EffectPass::EffectPass(int effect, int grain, QSize size, uint32_t seed)
    : effect_(drawnEffect(effect)), grain_(std::max(1, grain)), size_(size.expandedTo(QSize(1, 1))),
      seed_(seed)
{
    const int w = size_.width(), h = size_.height();
    band_ = std::max(8, std::min(w, h) / 24);
    double dist = std::max(w, h);
    const int cls = effect_ / 1000;
    if (effect_ == NoEffect) {
        steps_ = 1;
        return;
    }
    if (cls >= 5 && cls <= 9) kind_ = MoveKind;
    if ((effect_ >= 12004 && effect_ <= 12009) || (effect_ >= 14000 && effect_ <= 14007)) kind_ = CellKind;
    if (cls == 4) dist = Pi * std::hypot(w, h) / 2;  // angle × radius
    if (cls == 15 || cls == 16) dist = std::hypot(w, h);  // radius from an edge pivot
    steps_ = std::clamp(int(std::ceil(dist / grain_)), 1, 4000);
    QRandomGenerator rng(seed_ + uint32_t(effect_));
    if (kind_ == CellKind) buildCells();
    if (cls == 10 || (effect_ >= 12000 && effect_ <= 12003)) {
        const int n = 512;
        speeds_.resize(n);
        for (double &v : speeds_) v = 1.0 + rng.generateDouble() * 1.5;
    }
}

QRegion EffectPass::bands(bool horizontal, int parity) const
{
    QRegion r;
    const int w = size_.width(), h = size_.height();
    const int extent = horizontal ? h : w;
    for (int i = 0, pos = 0; pos < extent; ++i, pos += band_) {
        if (i % 2 != parity) continue;
        r += horizontal ? QRect(0, pos, w, band_) : QRect(pos, 0, band_, h);
    }
    return r;
}

void EffectPass::buildCells()
{
    const int w = size_.width(), h = size_.height();
    QRandomGenerator rng(seed_ + uint32_t(effect_) * 7u);
    int cw = 8, ch = 8;
    if (effect_ == 12004) {
        cw = w;
        ch = std::max(1, grain_ / 2);
    } else if (effect_ == 12005) {
        cw = ch = std::max(4, grain_);
    } else if (effect_ <= 12009) {
        cw = ch = std::max(8, grain_ * 2);
    } else {
        cw = ch = std::max(16, std::min(w, h) / 10);
    }
    const int cols = (w + cw - 1) / cw, rows = (h + ch - 1) / ch;
    cells_.clear();
    cells_.reserve(size_t(cols) * size_t(rows));
    std::vector<double> key;
    key.reserve(size_t(cols) * size_t(rows));
    // Spiral order, clockwise from the top-left corner inwards (or counter-clockwise).
    std::vector<int> spiralRank;
    const bool spiral = effect_ >= 14004 && effect_ <= 14007;
    if (spiral) {
        spiralRank.assign(size_t(cols) * size_t(rows), 0);
        const bool cw = effect_ == 14004 || effect_ == 14007;  // 14007 is the reverse of the CW inward spiral
        int top = 0, left = 0, bottom = rows - 1, right = cols - 1, n = 0;
        while (top <= bottom && left <= right) {
            if (cw) {
                for (int x = left; x <= right; ++x) spiralRank[size_t(top * cols + x)] = n++;
                for (int y = top + 1; y <= bottom; ++y) spiralRank[size_t(y * cols + right)] = n++;
                if (top < bottom)
                    for (int x = right - 1; x >= left; --x) spiralRank[size_t(bottom * cols + x)] = n++;
                if (left < right)
                    for (int y = bottom - 1; y > top; --y) spiralRank[size_t(y * cols + left)] = n++;
            } else {
                for (int y = top; y <= bottom; ++y) spiralRank[size_t(y * cols + left)] = n++;
                for (int x = left + 1; x <= right; ++x) spiralRank[size_t(bottom * cols + x)] = n++;
                if (left < right)
                    for (int y = bottom - 1; y >= top; --y) spiralRank[size_t(y * cols + right)] = n++;
                if (top < bottom)
                    for (int x = right - 1; x > left; --x) spiralRank[size_t(top * cols + x)] = n++;
            }
            ++top, ++left, --bottom, --right;
        }
    }
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < cols; ++x) {
            cells_.push_back({QRect(x * cw, y * ch, cw, ch), 0});
            const double fx = cols > 1 ? double(x) / (cols - 1) : 0,
                         fy = rows > 1 ? double(y) / (rows - 1) : 0;
            double k = 0;
            switch (effect_) {
            case 12004:
            case 12005:
                k = rng.generateDouble();
                break;
            case 12006:
                k = (1 - fx) * 0.6 + rng.generateDouble() * 0.4;
                break;
            case 12007:
                k = fx * 0.6 + rng.generateDouble() * 0.4;
                break;
            case 12008:
                k = (1 - fy) * 0.6 + rng.generateDouble() * 0.4;
                break;
            case 12009:
                k = fy * 0.6 + rng.generateDouble() * 0.4;
                break;
            case 14000:
                k = y * cols + x;
                break;
            case 14001:
                k = (rows - 1 - y) * cols + x;
                break;
            case 14002:
                k = x * rows + y;
                break;
            case 14003:
                k = (cols - 1 - x) * rows + y;
                break;
            case 14004:
            case 14006:
                k = spiralRank[size_t(y * cols + x)];
                break;
            default:
                k = -spiralRank[size_t(y * cols + x)];
                break;  // from C: the inward spiral reversed
            }
            key.push_back(k);
        }
    }
    std::vector<int> order(cells_.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return key[size_t(a)] < key[size_t(b)]; });
    std::vector<Cell> sorted;
    sorted.reserve(cells_.size());
    for (int i : order) sorted.push_back(cells_[size_t(i)]);
    cells_ = std::move(sorted);
    cellCount_ = int(cells_.size());
}

void EffectPass::areaAt(double t, Area *out)
{
    Area &a = *out;
    a.clear();
    const int w = size_.width(), h = size_.height();
    const QRect r(0, 0, w, h);
    const QRectF rf(0, 0, w, h);
    auto reg = [](const QRegion &g) {
        Clip c;
        c.region = g;
        return c;
    };
    auto pth = [](const QPainterPath &p) {
        Clip c;
        c.isRegion = false;
        c.path = p;
        return c;
    };
    auto add = [&](std::initializer_list<Clip> clips) { a.emplace_back(clips); };
    auto rectList = [](std::vector<QRect> v) {
        Clip c;
        c.isRegion = false;
        c.isRects = true;
        c.rects = std::move(v);
        return c;
    };
    const int e = effect_;
    const int cls = e / 1000;

    if (cls == 2) {
        if (e <= 2003) return add({reg(wipe(r, e - 2000, t))});
        if (e <= 2007) {
            static const int c[] = {LT, LB, RT, RB};
            return add({pth(diag(rf, c[e - 2004], t))});
        }
        if (e <= 2019) {
            // Interlaced bands: odd bands first, then even bands.
            struct B {
                bool horizontal;
                int d1, d2;
            };
            static const B bt[] = {{true, LR, LR},  {false, TB, TB}, {true, LR, RL}, {false, TB, BT},
                                   {false, LR, LR}, {false, RL, RL}, {true, TB, TB}, {true, BT, BT},
                                   {false, LR, RL}, {false, RL, LR}, {true, TB, BT}, {true, BT, TB}};
            const B &b = bt[e - 2008];
            add({reg(bands(b.horizontal, 1)), reg(wipe(r, b.d1, ph1(t)))});
            if (t > 0.5) add({reg(bands(b.horizontal, 0)), reg(wipe(r, b.d2, ph2(t)))});
            return;
        }
        if (e == 2020) {
            add({reg(bands(true, 1)), reg(wipe(r, LR, t))});
            return add({reg(bands(true, 0)), reg(wipe(r, RL, t))});
        }
        if (e == 2021) {
            add({reg(bands(false, 1)), reg(wipe(r, TB, t))});
            return add({reg(bands(false, 0)), reg(wipe(r, BT, t))});
        }
        const int cw = int(std::lround(w * t / 2)), chh = int(std::lround(h * t / 2));
        switch (e) {
        case 2022:
            return add({reg(QRegion(0, 0, cw, h) + QRegion(w - cw, 0, cw, h))});
        case 2023:
            return add({reg(QRect(w / 2 - cw, 0, 2 * cw, h))});
        case 2024:
            return add({reg(QRegion(0, 0, w, chh) + QRegion(0, h - chh, w, chh))});
        case 2025:
            return add({reg(QRect(0, h / 2 - chh, w, 2 * chh))});
        case 2026:
        case 2027:
        case 2028:
        case 2029: {
            // In then out: the outer quarters close in, then the middle half opens out; out
            // then in the other way round.
            const bool vertical = e <= 2027;
            const bool inFirst = e == 2026 || e == 2028;
            const double outer = inFirst ? ph1(t) : ph2(t), inner = inFirst ? ph2(t) : ph1(t);
            const int ext = vertical ? w : h;
            const int o = int(std::lround(ext / 4.0 * outer)), i = int(std::lround(ext / 4.0 * inner));
            QRegion g;
            if (vertical) {
                g += QRect(0, 0, o, h);
                g += QRect(w - o, 0, o, h);
                g += QRect(w / 2 - i, 0, 2 * i, h);
            } else {
                g += QRect(0, 0, w, o);
                g += QRect(0, h - o, w, o);
                g += QRect(0, h / 2 - i, w, 2 * i);
            }
            return add({reg(g)});
        }
        case 2030:
            add({pth(diag(rf, LT, t / 2))});
            return add({pth(diag(rf, RB, t / 2))});
        case 2031:
            add({pth(diag(rf, LB, t / 2))});
            return add({pth(diag(rf, RT, t / 2))});
        case 2032:
        case 2033: {
            // A band about the diagonal through the centre, widening towards both corners.
            const bool ltrb = e == 2032;
            QPainterPath p;
            const double d = t;  // half-width in units of the normalised diagonal
            QPolygonF poly;
            // The band is |u - 1/2| <= d/2 with u = (x/w + y/h)/2 (or the mirrored diagonal).
            auto pt = [&](double x, double y) {
                return ltrb ? QPointF(x * w, y * h) : QPointF((1 - x) * w, y * h);
            };
            const double lo = 1 - d, hi = 1 + d;  // x + y between lo and hi
            auto clampLine = [&](double s, QPolygonF &pl) {
                // Points of x + y = s inside the unit square, from top-right to bottom-left.
                const double x0 = std::min(1.0, s), y0 = s - x0;
                const double y1 = std::min(1.0, s), x1 = s - y1;
                pl << pt(std::max(0.0, x0), std::max(0.0, y0)) << pt(std::max(0.0, x1), std::max(0.0, y1));
            };
            QPolygonF a1, a2;
            clampLine(std::max(0.0, lo), a1);
            clampLine(std::min(2.0, hi), a2);
            poly << a1[0] << a1[1] << a2[1] << a2[0];
            // Add the corners the band has reached.
            p.addPolygon(poly);
            p.closeSubpath();
            if (lo <= 0) p.addPath(diag(rf, ltrb ? LT : RT, 0.5 - lo / 2)), p.setFillRule(Qt::WindingFill);
            if (hi >= 2) p.addPath(diag(rf, ltrb ? RB : LB, 0.5)), p.setFillRule(Qt::WindingFill);
            return add({pth(p)});
        }
        case 2034:
            add({pth(diag(rf, LB, t))});
            return add({pth(diag(rf, RB, t))});
        case 2035:
            add({pth(diag(rf, LT, t))});
            return add({pth(diag(rf, RT, t))});
        case 2036:
            add({pth(diag(rf, RT, t))});
            return add({pth(diag(rf, RB, t))});
        case 2037:
            add({pth(diag(rf, LT, t))});
            return add({pth(diag(rf, LB, t))});
        case 2038:
            return add({reg(QRegion(wipe(QRect(0, 0, w / 2, h), TB, t))
                            + wipe(QRect(w / 2, 0, w - w / 2, h), BT, t))});
        case 2039:
            return add({reg(QRegion(wipe(QRect(0, 0, w, h / 2), LR, t))
                            + wipe(QRect(0, h / 2, w, h - h / 2), RL, t))});
        case 2040: {
            // From the centre out towards the four corners, one diagonal wipe per quadrant.
            const auto q = quadrants(r);
            static const int c[] = {RB, LB, RT, LT};
            for (int i = 0; i < 4; ++i) add({reg(q[size_t(i)]), pth(diag(QRectF(q[size_t(i)]), c[i], t))});
            return;
        }
        case 2041: {
            const int bh = h / 3;
            const int bw = int(std::lround(w * ph1(t) / 2));
            const int grow = int(std::lround((h - bh) * ph2(t) / 2));
            return add({reg(QRect(w / 2 - bw, h / 2 - bh / 2 - grow, 2 * bw, bh + 2 * grow))});
        }
        case 2042: {
            const int a1 = int(std::lround(h / 4.0 * ph1(t))), b1 = int(std::lround(w / 2.0 * ph2(t)));
            QRegion g = QRegion(0, 0, w, a1) + QRegion(0, h - a1, w, a1);
            g += QRect(0, 0, b1, h);
            g += QRect(w - b1, 0, b1, h);
            return add({reg(g)});
        }
        default:
            break;
        }
        const auto q = quadrants(r);
        if (e <= 2298) {
            const int n = e - 2043;
            const int d[4] = {(n / 64) % 4, (n / 16) % 4, (n / 4) % 4, n % 4};
            QRegion g;
            for (int i = 0; i < 4; ++i) g += wipe(q[size_t(i)], d[i], t);
            return add({reg(g)});
        }
        const int n = e - 2299;
        const int d[4] = {(n / 64) % 4, (n / 16) % 4, (n / 4) % 4, n % 4};
        for (int i = 0; i < 4; ++i) add({reg(q[size_t(i)]), pth(diag(QRectF(q[size_t(i)]), d[i], t))});
        return;
    }

    if (cls == 3) {
        auto centred = [&](double s) {
            const int cw = int(std::lround(w * s)), ch = int(std::lround(h * s));
            return QRect((w - cw) / 2, (h - ch) / 2, cw, ch);
        };
        auto frameIn = [&](double s) { return QRegion(r) - QRegion(centred(1 - s)); };
        if (e == 3000) return add({reg(frameIn(t))});
        if (e == 3001) return add({reg(centred(t))});
        // Interlaced: concentric frames, the odd set first, then the even set.
        QRegion rings[2];
        const int n = std::max(w, h) / 2 / band_ + 1;
        for (int k = 0; k < n; ++k) {
            const double s0 = 1 - double(k) / n, s1 = 1 - double(k + 1) / n;
            rings[k % 2] += QRegion(centred(s0)) - QRegion(centred(s1));
        }
        const bool in1 = e == 3002 || e == 3004, in2 = e == 3002 || e == 3005;
        add({reg(rings[1]), reg(in1 ? frameIn(ph1(t)) : QRegion(centred(ph1(t))))});
        if (t > 0.5) add({reg(rings[0]), reg(in2 ? frameIn(ph2(t)) : QRegion(centred(ph2(t))))});
        return;
    }

    if (cls == 4) {
        const QPointF c(w / 2.0, h / 2.0);
        const double R = std::hypot(w, h);
        const int n = e - 4000;
        if (n < 8) {
            static const double start[] = {180, 180, 0, 0, 90, 90, 270, 270};
            return add({pth(pie(c, R, start[n], (n % 2 ? 360 : -360) * t))});
        }
        if (n < 16) {
            struct P {
                double px, py, start, sweep;
            };
            static const P pv[] = {{0, .5, 270, 180}, {0, .5, 90, -180}, {1, .5, 270, -180}, {1, .5, 90, 180},
                                   {.5, 0, 180, 180}, {.5, 0, 0, -180},  {.5, 1, 180, -180}, {.5, 1, 0, 180}};
            const P &p = pv[n - 8];
            return add({pth(pie(QPointF(p.px * w, p.py * h), R, p.start, p.sweep * t))});
        }
        if (n < 20) {
            static const double s1[] = {180, 180, 90, 90}, s2[] = {0, 0, 270, 270}, dir[] = {-1, 1, -1, 1};
            add({pth(pie(c, R, s1[n - 16], dir[n - 16] * 180 * t))});
            return add({pth(pie(c, R, s2[n - 16], dir[n - 16] * 180 * t))});
        }
        if (n < 28) {
            // Mirrored pairs about an edge pivot: from the edges to the middle, or out from it.
            const int k = (n - 20) / 2;
            const bool fromMiddle = (n - 20) % 2 == 1;
            static const double px[] = {0, 1, .5, .5}, py[] = {.5, .5, 0, 1};
            static const double mid[] = {0, 180, 270, 90};
            const QPointF pv(px[k] * w, py[k] * h);
            if (fromMiddle) {
                add({pth(pie(pv, R, mid[k], 90 * t))});
                return add({pth(pie(pv, R, mid[k], -90 * t))});
            }
            add({pth(pie(pv, R, mid[k] + 90, -90 * t))});
            return add({pth(pie(pv, R, mid[k] - 90, 90 * t))});
        }
        const double dir = n == 28 ? -1 : 1;
        for (int i = 0; i < 4; ++i) add({pth(pie(c, R, 90.0 * i, dir * 90 * t))});
        return;
    }

    if (cls == 10) {
        // Drip: columns (or rows) run in at uneven speeds.
        const bool cols = e <= 10001;
        const int ext = cols ? w : h, len = cols ? h : w;
        const int cw = std::max(8, ext / 64);
        std::vector<QRect> g;
        for (int i = 0, pos = 0; pos < ext; ++i, pos += cw) {
            const int l =
                int(std::lround(len * std::clamp(t * speeds_[size_t(i) % speeds_.size()], 0.0, 1.0)));
            if (e == 10000) g.push_back(QRect(pos, 0, cw, l));
            if (e == 10001) g.push_back(QRect(pos, h - l, cw, l));
            if (e == 10002) g.push_back(QRect(0, pos, l, cw));
            if (e == 10003) g.push_back(QRect(w - l, pos, l, cw));
        }
        return add({rectList(std::move(g))});
    }

    if (cls == 11) {
        const int sh = std::max(8, h / 12), sw = std::max(8, w / 12);
        auto slats = [&](bool horizontal, auto fraction, bool reverse) {
            QRegion g;
            const int ext = horizontal ? h : w, sz = horizontal ? sh : sw;
            const int n = (ext + sz - 1) / sz;
            for (int i = 0; i < n; ++i) {
                const double f = std::clamp(fraction(i, n), 0.0, 1.0);
                const int l = int(std::lround(sz * f));
                const int pos = i * sz;
                if (horizontal) g += reverse ? QRect(0, pos + sz - l, w, l) : QRect(0, pos, w, l);
                else g += reverse ? QRect(pos + sz - l, 0, l, h) : QRect(pos, 0, l, h);
            }
            return g;
        };
        auto flat = [&](int, int) { return t; };
        auto growing = [&](bool rev) {
            return [&, rev](int i, int n) {
                const double s = (rev ? (n - 1 - i) : i) / double(std::max(1, n)) * 0.5;
                return (t - s) / 0.5;
            };
        };
        switch (e) {
        case 11000:
            return add({reg(slats(true, flat, false))});
        case 11001:
            return add({reg(slats(false, flat, false))});
        case 11002:
            return add({reg(slats(false, growing(false), false))});
        case 11003:
            return add({reg(slats(false, growing(true), true))});
        case 11004:
            return add({reg(slats(true, growing(false), false))});
        case 11005:
            return add({reg(slats(true, growing(true), true))});
        default:
            return add({reg(slats(true, flat, false) + slats(false, flat, false))});
        }
    }

    if (cls == 12) {
        // Random bars (12000..12003): bars of the grain's height, each at its own speed.
        const bool rows = e <= 12001;
        const int ext = rows ? h : w, len = rows ? w : h;
        const int bh = std::max(2, grain_);
        std::vector<QRect> g;
        for (int i = 0, pos = 0; pos < ext; ++i, pos += bh) {
            const int l =
                int(std::lround(len * std::clamp(t * speeds_[size_t(i) % speeds_.size()], 0.0, 1.0)));
            if (e == 12000) g.push_back(QRect(w - l, pos, l, bh));
            if (e == 12001) g.push_back(QRect(0, pos, l, bh));
            if (e == 12002) g.push_back(QRect(pos, h - l, bh, l));
            if (e == 12003) g.push_back(QRect(pos, 0, bh, l));
        }
        return add({rectList(std::move(g))});
    }

    if (cls == 13) {
        const int q = std::max(16, std::min(w, h) / 8);
        static const int d1[] = {TB, BT, LR, RL, TB, BT, LR, RL}, d2[] = {TB, BT, LR, RL, BT, TB, RL, LR};
        std::vector<QRect> g;
        const double tt[2] = {ph1(t), ph2(t)};
        const int dd[2] = {d1[e - 13000], d2[e - 13000]};
        for (int y = 0, j = 0; y < h; y += q, ++j)
            for (int x = 0, i = 0; x < w; x += q, ++i) {
                const int set = (i + j) % 2;
                g.push_back(wipe(QRect(x, y, q, q), dd[set], tt[set]));
            }
        return add({rectList(std::move(g))});
    }

    if (cls == 15 || cls == 16) {
        // Circles and ellipses, in a space where an ellipse is a circle (ellipses are
        // fitted to the picture; circles keep their shape).
        const bool ell = cls == 16;
        const double sx = ell ? w : std::max(w, h), sy = ell ? h : std::max(w, h);
        auto centreOf = [&](int k) {
            static const double px[] = {.5, 0, 1, .5, .5}, py[] = {.5, .5, .5, 0, 1};
            return QPointF(px[k] * w, py[k] * h);
        };
        auto maxRadius = [&](const QPointF &c) {
            double m = 0;
            for (const QPointF &k : {QPointF(0, 0), QPointF(w, 0), QPointF(0, h), QPointF(w, h)})
                m = std::max(m, std::hypot((k.x() - c.x()) / sx, (k.y() - c.y()) / sy));
            return m;
        };
        auto disc = [&](const QPointF &c, double s) {
            const double m = maxRadius(c) * s;
            return ellipse(c, m * sx, m * sy);
        };
        // Out: a growing disc; in: everything outside a shrinking one.
        auto area = [&](int k, bool out, double s) {
            const QPointF c = centreOf(k);
            if (out) return disc(c, s);
            QPainterPath p;
            p.setFillRule(Qt::OddEvenFill);
            p.addRect(rf);
            p.addPath(disc(c, 1 - s));
            return p;
        };
        auto rings = [&](int k, int parity) {
            const QPointF c = centreOf(k);
            const double m = maxRadius(c);
            const double step = double(band_) / std::max(sx, sy);
            QPainterPath p;
            p.setFillRule(Qt::OddEvenFill);
            if (parity) p.addRect(rf.adjusted(-1, -1, 1, 1));
            for (double rad = step; rad < m + step; rad += step) p.addEllipse(c, rad * sx, rad * sy);
            return p;
        };
        // Each ring set is drawn through a masked copy of the source (see maskedSource).
        auto ringClip = [&](int k, int parity) {
            Clip c;
            c.isRegion = false;
            c.mask = parity;
            c.path = rings(k, parity);
            return c;
        };
        const int n = e % 1000;
        if (n < 10) return add({pth(area(n / 2, n % 2 == 1, t))});
        if (n < 30) {
            const int k = (n - 10) / 4, mode = (n - 10) % 4;
            const bool out1 = mode == 1 || mode == 3, out2 = mode == 1 || mode == 2;
            add({ringClip(k, 0), pth(area(k, out1, ph1(t)))});
            if (t > 0.5) add({ringClip(k, 1), pth(area(k, out2, ph2(t)))});
            return;
        }
        switch (n) {
        case 30:
            add({ringClip(1, 0), pth(area(1, true, t))});
            return add({ringClip(2, 1), pth(area(2, true, t))});
        case 31:
            add({ringClip(3, 0), pth(area(3, true, t))});
            return add({ringClip(4, 1), pth(area(4, true, t))});
        case 32:
            add({pth(area(1, true, t))});
            return add({pth(area(2, true, t))});
        case 34:
            add({pth(area(3, true, t))});
            return add({pth(area(4, true, t))});
        default: {
            // In from both: what lies outside both shrinking discs.
            const int k1 = n == 33 ? 1 : 3, k2 = n == 33 ? 2 : 4;
            QPainterPath whole;
            whole.addRect(rf);
            QPainterPath both = disc(centreOf(k1), 1 - t).united(disc(centreOf(k2), 1 - t));
            return add({pth(whole.subtracted(both))});
        }
        }
    }
    add({reg(wipe(r, LR, t))});
}

const QImage &EffectPass::maskedSource(int mask, const QPainterPath &path, const QImage &source)
{
    QImage &m = masked_[mask];
    if (m.isNull() || maskedKey_[mask] != source.cacheKey()) {
        m = QImage(source.size(), QImage::Format_ARGB32_Premultiplied);
        m.fill(Qt::transparent);
        QPainter mp(&m);
        mp.setClipPath(path);
        mp.drawImage(0, 0, source);
        maskedKey_[mask] = source.cacheKey();
    }
    return m;
}

// An outline of the wand's width kept inside R, so the next step's drawing covers it.
static void wandInside(QPainter &p, const QRect &r, int wand, const QColor &c)
{
    // A rectangle too thin to show a line and the picture beside it gets none.
    if (std::min(r.width(), r.height()) < 6 * wand) return;
    const int w = wand;
    p.setPen(QPen(c, w, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    p.setBrush(Qt::NoBrush);
    p.drawRect(QRectF(r).adjusted(w / 2.0, w / 2.0, -w / 2.0, -w / 2.0));
}

void EffectPass::drawArea(QPainter &p, const Area &a, const QImage &source, int wand, const QColor &wandColor)
{
    for (const Layer &layer : a) {
        if (layer.size() == 1 && layer.front().isRects) {
            for (const QRect &r : layer.front().rects) {
                if (r.isEmpty()) continue;
                p.drawImage(r.topLeft(), source, r);
                if (wand > 0) wandInside(p, r, wand, wandColor);
            }
            continue;
        }
        p.save();
        bool first = true;
        bool empty = false;
        bool masked = false;
        const QImage *src = &source;
        for (const Clip &c : layer) {
            if (c.mask >= 0) {
                src = &maskedSource(c.mask, c.path, source);
                masked = true;
                continue;
            }
            if (c.isRegion) {
                if (c.region.isEmpty()) empty = true;
                p.setClipRegion(c.region, first ? Qt::ReplaceClip : Qt::IntersectClip);
            } else {
                p.setClipPath(c.path, first ? Qt::ReplaceClip : Qt::IntersectClip);
            }
            first = false;
        }
        if (!empty) p.drawImage(0, 0, *src);
        // The wand: a line of the effect colour on the edge of the area, inside it, so that
        // the next step (whose area holds this one) paints over it. A masked layer (the
        // interlaced rings) has none: its edge would fall outside the mask.
        if (wand > 0 && !empty && !masked) {
            p.setPen(QPen(wandColor, 2 * wand));
            p.setBrush(Qt::NoBrush);
            for (const Clip &c : layer) {
                if (!c.isRegion) {
                    p.drawPath(c.path);
                } else if (c.region.rectCount() <= 64) {
                    QPainterPath path;
                    path.addRegion(c.region);
                    p.drawPath(path.simplified());
                }
            }
        }
        p.restore();
    }
}

void EffectPass::drawMove(QPainter &p, double t, const QImage &source, const QImage &before)
{
    const int w = size_.width(), h = size_.height();
    const QRect r(0, 0, w, h);
    const int e = effect_;
    const int cls = e / 1000;
    // One moving piece: within Sub, the new picture moves along M (a unit step per axis).
    auto push = [&](const QRect &sub, QPoint m, bool pushOld) {
        p.save();
        p.setClipRect(sub);
        const QPoint ext(m.x() * sub.width(), m.y() * sub.height());
        const QPoint offNew(int(std::lround(-ext.x() * (1 - t))), int(std::lround(-ext.y() * (1 - t))));
        if (pushOld) {
            const QPoint offOld(int(std::lround(ext.x() * t)), int(std::lround(ext.y() * t)));
            p.drawImage(sub.translated(offOld), before, sub);
        }
        p.drawImage(sub.translated(offNew), source, sub);
        p.restore();
    };
    static const QPoint straight[] = {QPoint(-1, 0), QPoint(1, 0), QPoint(0, -1), QPoint(0, 1)};
    static const QPoint diagonal[] = {QPoint(1, 1), QPoint(1, -1), QPoint(-1, 1), QPoint(-1, -1)};
    const auto q = quadrants(r);
    auto halves = [&](int n, auto piece) {
        const QRect a = n < 2 ? QRect(0, 0, w / 2, h) : QRect(0, 0, w, h / 2);
        const QRect b = n < 2 ? QRect(w / 2, 0, w - w / 2, h) : QRect(0, h / 2, w, h - h / 2);
        const bool outwards = n % 2 == 0;
        const QPoint ma = n < 2 ? QPoint(outwards ? -1 : 1, 0) : QPoint(0, outwards ? -1 : 1);
        piece(a, ma);
        piece(b, -ma);
    };
    auto quads = [&](int n, const QPoint *dirs, auto piece) {
        const int d[4] = {(n / 64) % 4, (n / 16) % 4, (n / 4) % 4, n % 4};
        for (int i = 0; i < 4; ++i) piece(q[size_t(i)], dirs[d[i]]);
    };
    if (cls == 5 || cls == 6) {
        const bool old = cls == 5;
        auto piece = [&](const QRect &sub, QPoint m) { push(sub, m, old); };
        const int n = e - cls * 1000;
        if (n <= 3) return piece(r, straight[n]);
        if (cls == 6 && n <= 7) {
            static const QPoint d[] = {QPoint(1, 1), QPoint(-1, 1), QPoint(1, -1), QPoint(-1, -1)};
            return piece(r, d[n - 4]);
        }
        if (cls == 6 && (n == 8 || n == 9)) {
            // Interlaced bands, the odd ones from one side, the even from the other.
            const bool horizontal = n == 8;
            for (int i = 0, pos = 0; pos < (horizontal ? h : w); ++i, pos += band_) {
                const QRect sub = horizontal ? QRect(0, pos, w, band_) : QRect(pos, 0, band_, h);
                piece(sub, horizontal ? QPoint(i % 2 ? 1 : -1, 0) : QPoint(0, i % 2 ? 1 : -1));
            }
            return;
        }
        if (cls == 5 && n <= 7) return halves(n - 4, piece);
        if (cls == 6 && n <= 13) return halves(n - 10, piece);
        if (cls == 5) return quads(n - 8, straight, piece);
        if (n <= 269) return quads(n - 14, straight, piece);
        return quads(n - 270, diagonal, piece);
    }
    if (cls == 7) {
        // Roll: the part passed shows, and a narrow band at the edge shows the picture
        // folded back on itself, as a roll unwinding.
        static const int rollDirs[] = {LR, RL, TB, BT};
        auto roll = [&](const QRect &sub, int dir) {
            const QRect shown = wipe(sub, dir, t);
            p.drawImage(shown, source, shown);
            const bool horiz = dir == LR || dir == RL;
            const int ext = horiz ? sub.width() : sub.height();
            const int band = std::max(1, std::min(ext / 12, ext - (horiz ? shown.width() : shown.height())));
            if (band <= 1 || t >= 1) return;
            QRect edge;
            switch (dir) {
            case LR:
                edge = QRect(shown.right() + 1, sub.top(), band, sub.height());
                break;
            case RL:
                edge = QRect(shown.left() - band, sub.top(), band, sub.height());
                break;
            case TB:
                edge = QRect(sub.left(), shown.bottom() + 1, sub.width(), band);
                break;
            default:
                edge = QRect(sub.left(), shown.top() - band, sub.width(), band);
                break;
            }
            const QImage folded = source.copy(edge).mirrored(horiz, !horiz);
            p.drawImage(edge, folded);
            p.fillRect(edge, QColor(0, 0, 0, 60));
        };
        const int n = e - 7000;
        if (n <= 3) return roll(r, rollDirs[n]);
        if (n <= 7) {
            const int k = n - 4;
            const bool vertical = k < 2;
            const QRect a = vertical ? QRect(0, 0, w / 2, h) : QRect(0, 0, w, h / 2);
            const QRect b = vertical ? QRect(w / 2, 0, w - w / 2, h) : QRect(0, h / 2, w, h - h / 2);
            const bool outwards = k % 2 == 0;
            roll(a, vertical ? (outwards ? RL : LR) : (outwards ? BT : TB));
            roll(b, vertical ? (outwards ? LR : RL) : (outwards ? TB : BT));
            return;
        }
        const int m = n - 8;
        const int d[4] = {(m / 64) % 4, (m / 16) % 4, (m / 4) % 4, m % 4};
        for (int i = 0; i < 4; ++i) roll(q[size_t(i)], rollDirs[d[i]]);
        return;
    }
    if (cls == 8) {
        // Rotate: the picture swings in on a hinge at the edge it starts from.
        auto swing = [&](const QRect &sub, int dir) {
            const double s = std::max(t, 0.001);
            QRect target = sub;
            const bool horiz = dir == LR || dir == RL;
            const int len = int(std::lround((horiz ? sub.width() : sub.height()) * s));
            switch (dir) {
            case LR:
                target.setWidth(len);
                break;
            case RL:
                target.setLeft(sub.right() + 1 - len);
                break;
            case TB:
                target.setHeight(len);
                break;
            default:
                target.setTop(sub.bottom() + 1 - len);
                break;
            }
            if (target.width() > 0 && target.height() > 0) p.drawImage(target, source, sub);
        };
        static const int dirs[] = {LR, RL, TB, BT};
        const int n = e - 8000;
        if (n <= 3) return swing(r, dirs[n]);
        const int m = n - 4;
        const int d[4] = {(m / 64) % 4, (m / 16) % 4, (m / 4) % 4, m % 4};
        for (int i = 0; i < 4; ++i) swing(q[size_t(i)], dirs[d[i]]);
        return;
    }
    // Zoom: 9000 the old picture shrinks away towards the centre over the new one; 9001 the
    // new picture grows out of the centre.
    const bool outFromC = e == 9001;
    const double s = outFromC ? t : 1 - t;
    const int zw = int(std::lround(w * s)), zh = int(std::lround(h * s));
    const QRect target((w - zw) / 2, (h - zh) / 2, zw, zh);
    if (!outFromC) p.drawImage(0, 0, source);
    if (zw > 0 && zh > 0) p.drawImage(target, outFromC ? source : before);
}

void EffectPass::drawStep(QPainter &p, int k, const QImage &source, const QImage &before, int wand,
                          const QColor &wandColor)
{
    if (effect_ == NoEffect || k >= steps_) {
        if (kind_ == CellKind) drawnCells_ = cellCount_;
        drawFinal(p, source);
        return;
    }
    const double t = double(std::clamp(k, 0, steps_)) / steps_;
    if (kind_ == MoveKind) {
        drawMove(p, t, source, before);
        return;
    }
    if (kind_ == CellKind) {
        // Only the cells that come in at this step are drawn: the area only grows.
        const int upto = int(std::lround(double(cellCount_) * t));
        // The cells of the step before lose their wand; the new ones get it.
        if (wand > 0)
            for (int i = wandFrom_; i < drawnCells_; ++i) {
                const QRect c = cells_[size_t(i)].rect;
                p.drawImage(c.topLeft(), source, c);
            }
        for (int i = drawnCells_; i < upto; ++i) {
            const QRect c = cells_[size_t(i)].rect;
            p.drawImage(c.topLeft(), source, c);
            if (wand > 0) wandInside(p, c, wand, wandColor);
        }
        wandFrom_ = drawnCells_;
        drawnCells_ = std::max(drawnCells_, upto);
        return;
    }
    Area a;
    areaAt(t, &a);
    drawArea(p, a, source, wand, wandColor);
}

void EffectPass::drawFinal(QPainter &p, const QImage &source) { p.drawImage(0, 0, source); }

// ------------------------------------------------------------------------------ fills

QImage renderFill(const FillSpec &f, QSize size)
{
    QImage img(size.expandedTo(QSize(1, 1)), QImage::Format_RGB32);
    const int w = img.width(), h = img.height();
    if (f.kind == 2) {
        // A line pattern of the fore colour over the back colour.
        static const Qt::BrushStyle styles[] = {Qt::SolidPattern,    Qt::HorPattern,   Qt::VerPattern,
                                                Qt::FDiagPattern,    Qt::BDiagPattern, Qt::CrossPattern,
                                                Qt::DiagCrossPattern};
        int k = f.gradientValue <= 1 ? 0 : f.gradientValue - 1;
        if (k < 0 || k > 6) k = 0;
        img.fill(f.colors[3]);
        QPainter p(&img);
        p.fillRect(img.rect(), QBrush(f.colors[2], styles[k]));
        return img;
    }
    const int steps = std::clamp(f.steps, 2, 256);
    QRgb lut[256];
    const QColor a = f.colors[0], b = f.colors[1];
    for (int i = 0; i < steps; ++i) {
        const double u = double(i) / (steps - 1);
        lut[i] = qRgb(int(std::lround(a.red() + (b.red() - a.red()) * u)),
                      int(std::lround(a.green() + (b.green() - a.green()) * u)),
                      int(std::lround(a.blue() + (b.blue() - a.blue()) * u)));
    }
    const int s = f.fillValue;
    for (int y = 0; y < h; ++y) {
        auto *line = reinterpret_cast<QRgb *>(img.scanLine(y));
        const double fy = h > 1 ? double(y) / (h - 1) : 0;
        for (int x = 0; x < w; ++x) {
            const double fx = w > 1 ? double(x) / (w - 1) : 0;
            double v;
            if (s >= 1000 && s <= 1007) {
                static const double gx[] = {1, -1, 0, 0, 1, 1, -1, -1}, gy[] = {0, 0, 1, -1, 1, -1, 1, -1};
                const int k = s - 1000;
                const double px = gx[k] < 0 ? 1 - fx : fx, py = gy[k] < 0 ? 1 - fy : fy;
                const double n = std::abs(gx[k]) + std::abs(gy[k]);
                v = (std::abs(gx[k]) * px + std::abs(gy[k]) * py) / n;
            } else if (s >= 1008 && s <= 1015) {
                const int k = s - 1008;
                double u;
                if (k < 2) u = fx;
                else if (k < 4) u = fy;
                else if (k < 6) u = (fx + fy) / 2;
                else u = (1 - fx + fy) / 2;
                const double m = std::abs(2 * u - 1);
                v = k % 2 == 0 ? 1 - m : m;
            } else if (s >= 2000 && s <= 2007) {
                const int k = (s - 2000) % 4;
                const double dx = (k >= 2) ? 1 - fx : fx, dy = (k == 1 || k == 3) ? 1 - fy : fy;
                const double m = std::max(dx, dy);
                v = s <= 2003 ? 1 - m : m;
            } else if (s == 3000 || s == 3001) {
                const double m = std::max(std::abs(2 * fx - 1), std::abs(2 * fy - 1));
                v = s == 3000 ? 1 - m : m;
            } else if (s >= 5000 && s <= 5007) {
                static const double start[] = {180, 0, 90, 270, 135, 225, 45, 315};
                float ang = std::atan2(float(-(fy - 0.5) * h), float((fx - 0.5) * w)) * float(180 / Pi);
                ang -= float(start[s - 5000]);
                while (ang < 0) ang += 360;
                while (ang >= 360) ang -= 360;
                v = ang / 360;
            } else if (s == 4001) {
                v = std::min(1.0, std::hypot(2 * fx - 1, 2 * fy - 1) / std::sqrt(2.0));
            } else if (s == 4000) {
                v = 1 - std::min(1.0, std::hypot(2 * fx - 1, 2 * fy - 1) / std::sqrt(2.0));
            } else {
                v = fx;
            }
            line[x] = lut[std::clamp(int(v * steps), 0, steps - 1)];
        }
    }
    return img;
}

// ------------------------------------------------------------------------------ passes

bool inPass(int x, int y, int pass, int passes)
{
    if (passes <= 1) return true;
    const double threshold = Bayer[y & 7][x & 7] / 64.0;
    return int(std::floor(threshold * passes)) == pass - 1;
}

QImage passLayer(const QImage &source, int pass, int passes, bool transparent, QRgb transparentColor,
                 const QRect &pictureRect)
{
    if (passes <= 1 && !transparent) return source;
    QImage out = source.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QRgb key = transparentColor & 0xFFFFFF;
    for (int y = 0; y < out.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(out.scanLine(y));
        const bool rowInPicture = y >= pictureRect.top() && y <= pictureRect.bottom();
        for (int x = 0; x < out.width(); ++x) {
            bool keep = inPass(x, y, pass, passes);
            if (keep && transparent && rowInPicture && x >= pictureRect.left() && x <= pictureRect.right()
                && (line[x] & 0xFFFFFF) == key)
                keep = false;
            if (!keep) line[x] = 0;
        }
    }
    return out;
}

}  // namespace tw::slides
