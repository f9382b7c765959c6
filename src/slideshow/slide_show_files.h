// What the Slide Show tab offers to the other windows that hand it files (the selection
// list's "Add all Selections to the current Slide Show", the favorite browser): AddFile files
// a path in the show by the catalogue. Reach it through the window's page of tab 5:
//   if (auto *s = dynamic_cast<tw::slides::SlideShowFiles *>(host.page(5))) s->AddFile(path);
#pragma once

#include <QString>

namespace tw::slides {

class SlideShowFiles {
public:
    virtual ~SlideShowFiles() = default;
    virtual void AddFile(const QString &path) = 0;
};

}  // namespace tw::slides
