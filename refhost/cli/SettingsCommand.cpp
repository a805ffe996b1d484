// The "settings" verb: reads the three settings files into JSON and writes them from JSON, the
// way the settings dialog reads them when it opens and writes them with "Save".
#include "CliCommand.h"

#include "host/Translate.h"
#include "settings/SettingsEncoding.h"
#include "settings/SettingsFiles.h"
#include "settings/SettingsTextFile.h"
#include "settings/SettingsWriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <limits>
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

std::optional<InputError> checkDumpSource(const QString& cfaPath)
{
    const QFileInfo info(cfaPath);
    if (!info.exists())
        return InputError{cfaPath, QStringLiteral("no such file")};
    if (info.isDir())
        return InputError{cfaPath, QStringLiteral("is a folder, not a settings file")};
    QFile file(cfaPath);
    if (!file.open(QIODevice::ReadOnly))
        return InputError{cfaPath, QStringLiteral("cannot be read: ") + file.errorString()};
    return checkEncoding();
}

int dump(const QStringList& args, QTextStream& out, QTextStream& err)
{
    if (args.size() != 1) {
        err << "usage: kvinsertauto " << kDumpUsage << "\n";
        return kExitBadInput;
    }
    const QString cfaPath = args.first();
    if (const auto error = checkDumpSource(cfaPath))
        return reportBadInput(err, QStringLiteral("dump"), *error);

    const SettingsFiles files = readSettingsFiles(cfaPath);
    if (!files.errors.isEmpty()) {
        err << "kvinsertauto settings dump: " << files.errors.join(QStringLiteral("; ")) << "\n";
        return kExitFailure;
    }
    out << settingsJson(files);
    return kExitOk;
}

// --- write ------------------------------------------------------------------------------------

// Reads the JSON members into the dialog's contents, naming the first member that is wrong.
class JsonReader
{
public:
    std::optional<QString> error;

    QString text(const QJsonObject& object, const QString& key, const QString& where)
    {
        const QJsonValue value = object.value(key);
        if (!value.isString()) {
            fail(where + u'.' + key, value, QStringLiteral("a string"));
            return {};
        }
        return value.toString();
    }

    bool boolean(const QJsonObject& object, const QString& key, const QString& where)
    {
        const QJsonValue value = object.value(key);
        if (!value.isBool()) {
            fail(where + u'.' + key, value, QStringLiteral("true or false"));
            return false;
        }
        return value.toBool();
    }

    // A list index: a JSON integer, or a string holding a decimal integer (as dump prints it).
    int index(const QJsonObject& object, const QString& key, const QString& where)
    {
        const QJsonValue value = object.value(key);
        static const QRegularExpression decimal(QStringLiteral("^-?[0-9]{1,10}$"));
        if (value.isString() && decimal.match(value.toString()).hasMatch()) {
            bool ok = false;
            const int number = value.toString().toInt(&ok);
            if (ok)
                return number;
        }
        if (value.isDouble()) {
            const double number = value.toDouble();
            if (number == static_cast<double>(static_cast<qint64>(number)) &&
                number >= std::numeric_limits<int>::min() &&
                number <= std::numeric_limits<int>::max())
                return static_cast<int>(number);
        }
        fail(where + u'.' + key, value, QStringLiteral("an integer"));
        return kNoIndex;
    }

    QJsonObject object(const QJsonValue& value, const QString& where)
    {
        if (!value.isObject())
            fail(where, value, QStringLiteral("an object"));
        return value.toObject();
    }

    QJsonArray array(const QJsonObject& object, const QString& key, const QString& where)
    {
        const QJsonValue value = object.value(key);
        if (!value.isArray())
            fail(where + u'.' + key, value, QStringLiteral("an array"));
        return value.toArray();
    }

private:
    static constexpr int kNoIndex = -1;

    static QString kindOf(const QJsonValue& value)
    {
        switch (value.type()) {
        case QJsonValue::Null:
            return QStringLiteral("null");
        case QJsonValue::Bool:
            return QStringLiteral("a boolean");
        case QJsonValue::Double:
            return QStringLiteral("a number");
        case QJsonValue::String:
            return QStringLiteral("a string");
        case QJsonValue::Array:
            return QStringLiteral("an array");
        case QJsonValue::Object:
            return QStringLiteral("an object");
        case QJsonValue::Undefined:
            break;
        }
        return QStringLiteral("missing");
    }

    void fail(const QString& where, const QJsonValue& value, const QString& expected)
    {
        if (error)
            return;
        error = value.isUndefined()
                    ? QStringLiteral("%1 is missing (expected %2)").arg(where, expected)
                    : QStringLiteral("%1 must be %2, not %3").arg(where, expected, kindOf(value));
    }
};

QList<SettingsDialogContents::PlacementLine>
placementLines(JsonReader& reader, const QJsonObject& root, const QString& key)
{
    QList<SettingsDialogContents::PlacementLine> lines;
    const QJsonArray rows = reader.array(root, key, QStringLiteral("$"));
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const QString where = QStringLiteral("$.%1[%2]").arg(key).arg(i);
        const QJsonObject row = reader.object(rows.at(i), where);
        if (reader.error)
            break;
        lines.append({reader.text(row, QStringLiteral("blockName"), where),
                      reader.text(row, QStringLiteral("position"), where),
                      reader.text(row, QStringLiteral("angle"), where)});
    }
    return lines;
}

std::optional<SettingsDialogContents> contentsFromJson(const QByteArray& json, InputError& error)
{
    error.subject = QStringLiteral("standard input");
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        error.problem = QStringLiteral("malformed JSON at offset %1: %2")
                            .arg(parseError.offset)
                            .arg(parseError.errorString());
        return std::nullopt;
    }
    if (!document.isObject()) {
        error.problem = QStringLiteral("$ must be an object");
        return std::nullopt;
    }

    JsonReader reader;
    const QJsonObject root = document.object();
    const QString mainWhere = QStringLiteral("$.main");
    const QJsonObject main = reader.object(root.value(QStringLiteral("main")), mainWhere);
    SettingsDialogContents contents;
    if (!reader.error) {
        contents.gapBeforeVar = reader.text(main, QStringLiteral("gapBeforeVar"), mainWhere);
        contents.gapAfterVar = reader.text(main, QStringLiteral("gapAfterVar"), mainWhere);
        contents.startPoint = reader.text(main, QStringLiteral("startPoint"), mainWhere);
        contents.spaceWidth = reader.text(main, QStringLiteral("spaceWidth"), mainWhere);
        contents.separatorIndex = reader.index(main, QStringLiteral("separatorMode"), mainWhere);
        contents.pageSize = reader.text(main, QStringLiteral("pageSize"), mainWhere);
        contents.paginationIndex = reader.index(main, QStringLiteral("pageMode"), mainWhere);
        const QJsonArray fields = reader.array(main, QStringLiteral("fields"), mainWhere);
        for (qsizetype i = 0; i < fields.size() && !reader.error; ++i) {
            const QString where = QStringLiteral("$.main.fields[%1]").arg(i);
            const QJsonObject field = reader.object(fields.at(i), where);
            if (reader.error)
                break;
            // The dialog's "Show" cell holds the text of its chosen entry.
            const bool show = reader.boolean(field, QStringLiteral("show"), where);
            contents.fields.append({reader.text(field, QStringLiteral("fieldName"), where),
                                    reader.text(field, QStringLiteral("attribute"), where),
                                    reader.text(field, QStringLiteral("search"), where),
                                    show ? kvTr("Yes") : kvTr("No")});
        }
    }
    if (!reader.error)
        contents.blocks = placementLines(reader, root, QStringLiteral("blocks"));
    if (!reader.error)
        contents.symbols = placementLines(reader, root, QStringLiteral("symbols"));
    if (reader.error) {
        error.problem = *reader.error;
        return std::nullopt;
    }
    return contents;
}

std::optional<InputError> checkWriteTarget(const QString& cfaPath)
{
    const QFileInfo info(cfaPath);
    if (!info.absoluteDir().exists())
        return InputError{cfaPath, QStringLiteral("the folder %1 does not exist")
                                       .arg(QDir::toNativeSeparators(info.absolutePath()))};
    const QString cfbPath = companionPath(cfaPath, QStringLiteral(".cfb"));
    if (cfbPath == cfaPath)
        return InputError{cfaPath, QStringLiteral("the name holds no lowercase \".cfa\", so the "
                                                  "three files would share one path")};
    for (const QString& path : {cfaPath, cfbPath, QString(companionPath(cfaPath, ".cfc"))}) {
        if (QFileInfo(path).isDir())
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
    InputError error;
    const auto contents = contentsFromJson(input.readAll(), error);
    if (!contents)
        return reportBadInput(err, QStringLiteral("write"), error);

    const SettingsWriteResult result = writeSettingsFiles(*contents, cfaPath);
    if (!result.error.isEmpty() || !result.mainWritten || !result.symbolsWritten) {
        err << "kvinsertauto settings write: "
            << (result.error.isEmpty() ? cfaPath + QStringLiteral(": not written") : result.error)
            << "\n";
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
