// The one door between the dispatcher and the loaders of the file kinds. Each subsystem
// hands in its loader when it is there; a kind whose loader is missing is routed and
// recorded, and nothing more happens to it.
#pragma once

#include <QString>
#include <array>
#include <functional>

namespace tw {

enum class LoaderKind { Image = 0, Media = 1, Document = 2, Text = 3 };

class FileLoaders {
public:
    using Loader = std::function<void(const QString &path)>;

    void set(LoaderKind kind, Loader fn) { loaders_[index(kind)] = std::move(fn); }
    bool has(LoaderKind kind) const { return bool(loaders_[index(kind)]); }
    // Hands the path to the loader of its kind; false when that loader is not there.
    bool load(LoaderKind kind, const QString &path)
    {
        last_ = kind;
        ++count_;
        const Loader &fn = loaders_[index(kind)];
        if (!fn) return false;
        fn(path);
        return true;
    }
    int count() const { return count_; }
    LoaderKind last() const { return last_; }
    static QString name(LoaderKind kind)
    {
        static const char *names[] = {"LoadImage", "LoadMediaFile", "LoadDocument", "LoadText"};
        return QString::fromLatin1(names[index(kind)]);
    }

private:
    static size_t index(LoaderKind k) { return static_cast<size_t>(k); }
    std::array<Loader, 4> loaders_;
    LoaderKind last_ = LoaderKind::Image;
    int count_ = 0;
};

}  // namespace tw
