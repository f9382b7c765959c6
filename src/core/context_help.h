// F1 anywhere in the program opens the help on the topic of the control that has the
// focus: the topic of the nearest control up its parents that names one.
#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace tw {

// Names the help topic of a control and everything inside it ("finding", "pictures", ...).
void setHelpTopic(QWidget *w, const QString &topic);
// The topic that F1 opens for a control: its own or its nearest parent's, else "index".
QString helpTopicOf(const QWidget *w);
// Installs the F1 key for the whole program; Show opens the help on a topic.
void installContextHelp(std::function<void(const QString &topic)> show);

}  // namespace tw
