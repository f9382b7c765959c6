#include "scenario_hooks.h"

#include "globals.h"

#include <QHash>
#include <QList>
#include <QPair>

namespace tw {

namespace {
QHash<QString, ScenarioRoutine> &routines()
{
    static QHash<QString, ScenarioRoutine> r;
    return r;
}
QList<QPair<QString, ScenarioVariable>> &variables()
{
    static QList<QPair<QString, ScenarioVariable>> v;
    return v;
}
}  // namespace

void registerScenarioRoutine(const QString &name, ScenarioRoutine fn) { routines()[name] = std::move(fn); }

void registerScenarioVariables(const QString &owner, ScenarioVariable fn)
{
    unregisterScenarioVariables(owner);
    variables().append({owner, std::move(fn)});
}

void unregisterScenarioVariables(const QString &owner)
{
    auto &v = variables();
    for (int i = v.size() - 1; i >= 0; --i)
        if (v[i].first == owner) v.removeAt(i);
}

bool callScenarioRoutine(const QString &name, const QStringList &args, QString *error)
{
    auto it = routines().find(name);
    if (it == routines().end()) {
        *error = QStringLiteral("no routine named ") + name;
        return false;
    }
    *error = (*it)(args);
    return error->isEmpty();
}

bool scenarioVariable(const QString &name, QString *out)
{
    if (globalVariableText(name, out)) return true;
    for (const auto &p : variables())
        if (p.second(name, out)) return true;
    return false;
}

void clearScenarioHooks()
{
    routines().clear();
    variables().clear();
}

}  // namespace tw
