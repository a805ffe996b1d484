// The "settings" verb: reads the three settings files into JSON and writes them from JSON, the
// way the settings dialog reads them when it opens and writes them with "Save".
#include "CliCommand.h"
#include "SettingsAtomicWriter.h"
#include "SettingsInputCheck.h"
#include "SettingsJson.h"

#include "host/Translate.h"

#include "settings/SettingsEncoding.h"
#include "settings/SettingsFiles.h"
#include "settings/SettingsTextFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <optional>

namespace {

const QString kDumpUsage = QStringLiteral("settings dump FILE.cfa");
const QString kWriteUsage = QStringLiteral("settings write FILE.cfa < SETTINGS.json");

// A problem with the input; `subject` is the file (or "standard input") it is about.
struct InputError
{
    QString subject;
    QString problem;
};

int reportBadInput(QTextStream& err, const QString& action, const InputError& error)
{
    err << "kvinsertauto settings " << action << ": " << error.subject << ": " << error.problem
        << "\n";
    return kExitBadInput;
}

std::optional<InputError> checkEncoding()
{
    QString problem;
    if (!SettingsEncoding::fromEnvironment(&problem))
        return InputError{QStringLiteral("environment"), problem};
    return std::nullopt;
}

// --- dump -------------------------------------------------------------------------------------

QString jsonText(const QString& text)
{
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

QString jsonMember(const QString& key, const QString& value)
{
    return jsonText(key) + QStringLiteral(": ") + value;
}

QString placementRowsJson(const CEArquivoCfg& file)
{
    QStringList rows;
    for (int i = 0; i < file.rowCount(); ++i) {
        const CECampoCfg* row = file.row(i);
        rows.append(
            QStringLiteral("    {") +
            QStringList{jsonMember(QStringLiteral("blockName"), jsonText(row->blockName())),
                        jsonMember(QStringLiteral("position"), jsonText(row->storedPosition())),
                        jsonMember(QStringLiteral("angle"), jsonText(row->storedAngle()))}
                .join(QStringLiteral(", ")) +
            u'}');
    }
    return rows.isEmpty()
               ? QStringLiteral("[]")
               : QStringLiteral("[\n") + rows.join(QStringLiteral(",\n")) + QStringLiteral("\n  ]");
}

QString settingsJson(const SettingsFiles& files)
{
    const CEArquivoCfg& main = *files.main;
    QStringList members;
    const QList<QPair<QString, QString>> header = {
        {QStringLiteral("gapBeforeVar"), main.gapBeforeVar()},
        {QStringLiteral("gapAfterVar"), main.gapAfterVar()},
        {QStringLiteral("startPoint"), main.startPoint()},
        {QStringLiteral("spaceWidth"), main.spaceWidth()},
        {QStringLiteral("separatorMode"), main.separatorMode()},
        {QStringLiteral("pageSize"), main.pageSize()},
        {QStringLiteral("pageMode"), main.pageMode()}};
    for (const auto& [key, value] : header)
        members.append(QStringLiteral("    ") + jsonMember(key, jsonText(value)));

    QStringList fields;
    for (int i = 0; i < main.fieldCount(); ++i) {
        const CECampoCfg* row = main.field(i);
        fields.append(
            QStringLiteral("      {") +
            QStringList{jsonMember(QStringLiteral("fieldName"), jsonText(row->fieldName())),
                        jsonMember(QStringLiteral("attribute"), jsonText(row->attribute())),
                        jsonMember(QStringLiteral("search"), jsonText(row->search())),
                        jsonMember(QStringLiteral("show"),
                                   row->show() ? QStringLiteral("true") : QStringLiteral("false"))}
                .join(QStringLiteral(", ")) +
            u'}');
    }
    members.append(QStringLiteral("    ") +
                   jsonMember(QStringLiteral("fields"),
                              fields.isEmpty()
                                  ? QStringLiteral("[]")
                                  : QStringLiteral("[\n") + fields.join(QStringLiteral(",\n")) +
                                        QStringLiteral("\n    ]")));

    return QStringLiteral("{\n  ") +
           jsonMember(QStringLiteral("main"), QStringLiteral("{\n") +
                                                  members.join(QStringLiteral(",\n")) +
                                                  QStringLiteral("\n  }")) +
           QStringLiteral(",\n  ") +
           jsonMember(QStringLiteral("blocks"), placementRowsJson(*files.blocks)) +
           QStringLiteral(",\n  ") +
           jsonMember(QStringLiteral("symbols"), placementRowsJson(*files.symbols)) +
           QStringLiteral("\n}\n");
}

int dump(const QStringList& args, QTextStream& out, QTextStream& err)
{
    if (args.size() != 1) {
        err << "usage: kvinsertauto " << kDumpUsage << "\n";
        return kExitBadInput;
    }
    const QString cfaPath = args.first();
    // Damaged files are refused before the readers see them (they would read them as empty
    // or odd texts); the problem names the file.
    if (const QString problem = SettingsInputCheck::check(cfaPath); !problem.isEmpty()) {
        err << "kvinsertauto settings dump: " << problem << "\n";
        return kExitBadInput;
    }

    const SettingsFiles files = readSettingsFiles(cfaPath);
    if (!files.errors.isEmpty()) {
        err << "kvinsertauto settings dump: " << files.errors.join(QStringLiteral("; ")) << "\n";
        return kExitBadInput;
    }
    out << settingsJson(files);
    return kExitOk;
}

// --- write ------------------------------------------------------------------------------------

std::optional<InputError> checkWriteTarget(const QString& cfaPath)
{
    const QString cfbPath = companionPath(cfaPath, QStringLiteral(".cfb"));
    if (cfbPath == cfaPath)
        return InputError{cfaPath, QStringLiteral("the name holds no lowercase \".cfa\", so the "
                                                  "three files would share one path")};
    // The companions' folders differ from the .cfa's when a folder name holds ".cfa" too.
    for (const QString& path : {cfaPath, cfbPath, QString(companionPath(cfaPath, ".cfc"))}) {
        const QFileInfo info(path);
        if (!info.absoluteDir().exists())
            return InputError{path, QStringLiteral("the folder %1 does not exist")
                                        .arg(QDir::toNativeSeparators(info.absolutePath()))};
        if (info.isDir())
            return InputError{path, QStringLiteral("is a folder, not a settings file")};
    }
    return checkEncoding();
}

int write(const QStringList& args, QTextStream& err)
{
    if (args.size() != 1) {
        err << "usage: kvinsertauto " << kWriteUsage << "\n";
        return kExitBadInput;
    }
    const QString cfaPath = args.first();
    if (const auto error = checkWriteTarget(cfaPath))
        return reportBadInput(err, QStringLiteral("write"), *error);

    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly)) {
        return reportBadInput(err, QStringLiteral("write"),
                              {QStringLiteral("standard input"), input.errorString()});
    }
    const SettingsJsonResult parsed = settingsContentsFromJson(input.readAll());
    if (!parsed.contents) {
        return reportBadInput(err, QStringLiteral("write"),
                              {QStringLiteral("standard input"), parsed.problem});
    }

    // All three files or none: the files in place stay as they were when a write fails.
    if (const QString problem = SettingsAtomicWriter::write(*parsed.contents, cfaPath);
        !problem.isEmpty()) {
        err << "kvinsertauto settings write: " << kvTr("Error saving settings file.") << " "
            << problem << "\n";
        return kExitFailure;
    }
    return kExitOk;
}

int run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    const QString action = args.value(0);
    if (action == u"dump")
        return dump(args.mid(1), out, err);
    if (action == u"write")
        return write(args.mid(1), err);
    err << "usage: kvinsertauto " << kDumpUsage << "\n"
        << "       kvinsertauto " << kWriteUsage << "\n";
    return kExitBadInput;
}

const CliCommandRegistration registration({QStringLiteral("settings"),
                                           kDumpUsage + QStringLiteral(" | ") + kWriteUsage, run});

} // namespace
