// The effect engine of the slide shows: one pass of a paint or transition effect drawn step
// by step onto a surface with QPainter, the fills of a transition, and the pass masks. The
// effect numbers are those the .SLS files store; each class draws its own kind of reveal,
// and a number outside the classes draws the plain left-to-right wipe.
#pragma once

#include <QColor>
#include <QImage>
#include <QPainterPath>
#include <QRegion>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

class QPainter;

namespace tw::slides {

constexpr int NoEffect = 1000;

// The classes of effect numbers, in the order the dialogs list them.
struct EffectClass {
    QString name;
    int first, last;
};
const std::vector<EffectClass> &effectClasses();
// The class index of an effect number, or -1 when it lies in none.
int effectClassOf(int effect);
// What the number draws, in words, for the dialogs' lists.
QString effectName(int effect);
// The number drawn for Effect: itself inside a class, else the plain wipe 2000; 1001 is none.
int drawnEffect(int effect);

// One pass of one effect over a surface of the given size.
class EffectPass {
public:
    EffectPass(int effect, int grain, QSize size, uint32_t seed = 1);

    int effect() const { return effect_; }
    // How many steps the pass takes: the distance the edge travels over the grain.
    int steps() const { return steps_; }
    // Draws step K (1..steps()) with Source as the new picture and Before as what the
    // surface held when the pass began (the moving effects push it out or slide over it).
    // The wand, when above 0, is a line of that colour on the moving edge.
    void drawStep(QPainter &p, int k, const QImage &source, const QImage &before, int wand,
                  const QColor &wandColor);
    // The source over the whole surface, so that rounding leaves no gaps.
    static void drawFinal(QPainter &p, const QImage &source);

private:
    struct Clip {
        bool isRegion = true;
        QRegion region;
        QPainterPath path;
        // A fixed mask (the interlaced rings): drawn through a copy of the source made once
        // with only the mask's pixels, instead of clipping by the many-ringed path each step.
        int mask = -1;
        // Many small rectangles that never overlap, drawn one by one (no clip to build).
        bool isRects = false;
        std::vector<QRect> rects;
    };
    using Layer = std::vector<Clip>;
    using Area = std::vector<Layer>;
    struct Cell {
        QRect rect;
        int rank;
    };

    enum Kind { AreaKind, CellKind, MoveKind };
    void areaAt(double t, Area *out);
    void drawArea(QPainter &p, const Area &a, const QImage &source, int wand, const QColor &wandColor);
    void drawMove(QPainter &p, double t, const QImage &source, const QImage &before);
    void buildCells();
    QRegion bands(bool horizontal, int parity) const;

    const QImage &maskedSource(int mask, const QPainterPath &path, const QImage &source);

    int effect_;
    int grain_;
    QImage masked_[2];
    qint64 maskedKey_[2] = {0, 0};
    QSize size_;
    uint32_t seed_;
    Kind kind_ = AreaKind;
    int steps_ = 1;
    int band_ = 16;
    std::vector<Cell> cells_;
    int cellCount_ = 0;
    int drawnCells_ = 0;
    int wandFrom_ = 0;
    std::vector<double> speeds_;  // drip columns and random bars
};

// The fill a transition paints with: Kind 1 a gradient (FillValue its style, 1000..5007),
// kind 2 a line pattern (GradientValue 0 or 1 solid, 2 horizontal ... 7 diagonal cross).
// Colours 1 and 2 are the gradient's ends, 3 and 4 the pattern's fore and back colour;
// Steps (2..256) quantises a gradient.
struct FillSpec {
    int kind = 0;
    int gradientValue = 1;
    int fillValue = 4000;
    QColor colors[4];
    int steps = 256;
};
QImage renderFill(const FillSpec &f, QSize size);

// The pass mask: true when the pixel belongs to pass P (1-based) of N passes.
bool inPass(int x, int y, int pass, int passes);
// Source prepared for one pass: the pixels of other passes and the transparent colour left
// out (alpha 0). Returns Source itself when nothing is left out.
QImage passLayer(const QImage &source, int pass, int passes, bool transparent, QRgb transparentColor,
                 const QRect &pictureRect);

}  // namespace tw::slides
