// Routines and variables that the windows make reachable by name, so a scenario can call
// a public routine ("call DisplayFile ...") or read a window's variable.
#pragma once

#include <QString>
#include <QStringList>
#include <functional>

namespace tw {

using ScenarioRoutine = std::function<QString(const QStringList &args)>;  // "" or an error
using ScenarioVariable = std::function<bool(const QString &name, QString *out)>;

void registerScenarioRoutine(const QString &name, ScenarioRoutine fn);
void registerScenarioVariables(const QString &owner, ScenarioVariable fn);
void unregisterScenarioVariables(const QString &owner);
bool callScenarioRoutine(const QString &name, const QStringList &args, QString *error);
bool scenarioVariable(const QString &name, QString *out);
void clearScenarioHooks();

}  // namespace tw
