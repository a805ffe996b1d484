// The "job" verb: builds the insertion job from a settings file and an item tree, as the main
// dialog does when the user starts a run, and prints it as JSON (docs/job-json.md).
#include "CliCommand.h"
#include "FileChecks.h"
#include "SettingsInputCheck.h"

#include "engine/CEInsAutoJobBuilder.h"
#include "engine/CEInsAutoJobJson.h"
#include "maindialog/CTVNodesUtil.h"
#include "maindialog/ItemTreeJson.h"
#include "settings/SettingsEncoding.h"

#include <QFile>
#include <QFileInfo>

namespace {

const QString kUsage = QStringLiteral("job --settings S.cfa --tree T.json");

int badInput(QTextStream& err, const QString& problem)
{
    err << "kvinsertauto job: " << problem << "\n";
    return kExitBadInput;
}

int job(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QString settingsPath;
    QString treePath;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args.at(i);
        if (arg == u"--help" || arg == u"-h") {
            out << "usage: kvinsertauto " << kUsage << "\n";
            return kExitOk;
        }
        QString* target = arg == u"--settings" ? &settingsPath
                          : arg == u"--tree"   ? &treePath
                                               : nullptr;
        if (!target) {
            err << "kvinsertauto job: unknown argument " << arg << "\n"
                << "usage: kvinsertauto " << kUsage << "\n";
            return kExitBadInput;
        }
        if (i + 1 >= args.size())
            return badInput(err, arg + QStringLiteral(" needs a value"));
        *target = args.at(++i);
    }
    if (settingsPath.isEmpty() || treePath.isEmpty()) {
        err << "usage: kvinsertauto " << kUsage << "\n";
        return kExitBadInput;
    }

    QString problem;
    if (!SettingsEncoding::fromEnvironment(&problem))
        return badInput(err, QStringLiteral("environment: ") + problem);
    for (const QString& path : {settingsPath, treePath}) {
        if (const QString unreadable = FileChecks::readable(path); !unreadable.isEmpty())
            return badInput(err, unreadable);
    }

    if (const QString damaged = SettingsInputCheck::check(settingsPath); !damaged.isEmpty())
        return badInput(err, damaged);

    CTVNodesUtil tree;
    if (const ItemTreeJson::ReadResult read = ItemTreeJson::read(treePath, tree); !read.ok())
        return badInput(err, read.error);

    const CEInsAutoJobBuildResult built = CEInsAutoJobBuilder::build(settingsPath, tree);
    if (!built.ok())
        return badInput(err, built.errors.join(QStringLiteral("; ")));

    out << QString::fromUtf8(CEInsAutoJobJson::toJson(built.job));
    return kExitOk;
}

const CliCommandRegistration registration(CliCommand{QStringLiteral("job"), kUsage, job});

} // namespace
