// Measures how fast the workbook reader reads every cell of a sheet in row order, and how much
// memory it needs, on generated workbooks of 1,000, 10,000 and 100,000 rows of 10 columns.
//
//   kv_bench_workbook [ROWS...]         one line of figures per row count
//   kv_bench_workbook --write FILE ROWS writes one workbook
//   kv_bench_workbook --read FILE       reads one workbook through the reader
//   kv_bench_workbook --xml FILE        only streams the sheet's XML through QXmlStreamReader,
//                                       which is what the reader cannot go below
//
// Each workbook is written and read by child processes of their own, so that each size has its
// own peak memory (a child started by a large parent would inherit the parent's peak).
//
// The generated sheet has a row of column titles and then the kinds of cells a list of items
// has: numbers, shared strings from a pool of 1,000 texts, inline strings that differ on every
// row, booleans, dates and cached formula results. It is read the way the importer reads: for
// every row and column, the column is looked up by its title, then the cell is read.

#include "import/CIExcel.h"
#include "import/ZipPackage.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <QXmlStreamReader>

#include <zip.h>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

#include <cstdio>

namespace {

constexpr int kColumns = 10;
constexpr int kSharedPool = 1000;
const QString kSheet = QStringLiteral("Sheet1");

QByteArray columnName(int column)
{
    return QByteArray(1, char('A' + column));
}

QByteArray sheetXml(int rows)
{
    QByteArray xml;
    xml.reserve(qsizetype(rows) * 420 + 1024);
    xml += "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
           "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
           "<dimension ref=\"A1:J" +
           QByteArray::number(rows + 1) + "\"/><sheetData><row r=\"1\">";
    for (int column = 0; column < kColumns; ++column) {
        xml += "<c r=\"" + columnName(column) + "1\" t=\"inlineStr\"><is><t>TITLE " +
               QByteArray::number(column) + "</t></is></c>";
    }
    xml += "</row>";
    for (int row = 2; row <= rows + 1; ++row) {
        const QByteArray r = QByteArray::number(row);
        xml += "<row r=\"" + r + "\" spans=\"1:10\">";
        auto cell = [&](int column, const QByteArray& attributes, const QByteArray& content) {
            xml += "<c r=\"" + columnName(column) + r + "\"" + attributes + ">" + content + "</c>";
        };
        cell(0, "", "<v>" + r + "</v>");
        cell(1, " t=\"s\"", "<v>" + QByteArray::number(row % kSharedPool) + "</v>");
        cell(2, " t=\"inlineStr\"", "<is><t>K" + r + "</t></is>");
        cell(3, "", "<v>" + QByteArray::number(row * 0.25 + 0.1, 'g', 17) + "</v>");
        cell(4, " t=\"s\"", "<v>" + QByteArray::number((row * 7) % kSharedPool) + "</v>");
        cell(5, " t=\"b\"", row % 2 ? "<v>1</v>" : "<v>0</v>");
        cell(6, " s=\"1\"", "<v>" + QByteArray::number(45000 + row % 3000) + "</v>");
        cell(7, " t=\"str\"", "<f>C" + r + "&amp;\"x\"</f><v>K" + r + "x</v>");
        cell(8, "", "<v>" + QByteArray::number(row % 97 * 1.5, 'g', 17) + "</v>");
        cell(9, " t=\"s\"", "<v>" + QByteArray::number((row * 13) % kSharedPool) + "</v>");
        xml += "</row>";
    }
    xml += "</sheetData></worksheet>";
    return xml;
}

QByteArray sharedStringsXml()
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                     "<sst xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">";
    for (int i = 0; i < kSharedPool; ++i)
        xml += "<si><t>Description of component " + QByteArray::number(i) + "</t></si>";
    return xml + "</sst>";
}

bool addPart(zip_t* archive, const char* name, const QByteArray& data)
{
    // libzip copies nothing: the buffer must live until the archive is closed.
    zip_source_t* source =
        zip_source_buffer(archive, data.constData(), zip_uint64_t(data.size()), 0);
    if (!source)
        return false;
    if (zip_file_add(archive, name, source, ZIP_FL_ENC_UTF_8) < 0) {
        zip_source_free(source);
        return false;
    }
    return true;
}

qint64 writeWorkbook(const QString& path, int rows, qint64* sheetBytes)
{
    const QByteArray contentTypes =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
        "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
        "<Default Extension=\"rels\" "
        "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
        "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
        "<Override PartName=\"/xl/workbook.xml\" "
        "ContentType=\"application/"
        "vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml\"/>"
        "<Override PartName=\"/xl/worksheets/sheet1.xml\" "
        "ContentType=\"application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml\"/"
        ">"
        "</Types>";
    const QByteArray rootRels =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
        "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
        "<Relationship Id=\"rId1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/"
        "relationships/officeDocument\" Target=\"xl/workbook.xml\"/></Relationships>";
    const QByteArray workbook =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
        "<workbook xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
        "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">"
        "<sheets><sheet name=\"Sheet1\" sheetId=\"1\" r:id=\"rId1\"/></sheets></workbook>";
    const QByteArray workbookRels =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
        "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
        "<Relationship Id=\"rId1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/"
        "relationships/worksheet\" Target=\"worksheets/sheet1.xml\"/>"
        "<Relationship Id=\"rId2\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/"
        "relationships/sharedStrings\" Target=\"sharedStrings.xml\"/>"
        "<Relationship Id=\"rId3\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/"
        "relationships/styles\" Target=\"styles.xml\"/></Relationships>";
    const QByteArray styles =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
        "<styleSheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
        "<cellXfs count=\"2\"><xf numFmtId=\"0\"/><xf numFmtId=\"14\"/></cellXfs></styleSheet>";
    const QByteArray shared = sharedStringsXml();
    const QByteArray sheet = sheetXml(rows);
    *sheetBytes = sheet.size();

    int error = 0;
    zip_t* archive =
        zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (!archive)
        return -1;
    const bool added = addPart(archive, "[Content_Types].xml", contentTypes) &&
                       addPart(archive, "_rels/.rels", rootRels) &&
                       addPart(archive, "xl/workbook.xml", workbook) &&
                       addPart(archive, "xl/_rels/workbook.xml.rels", workbookRels) &&
                       addPart(archive, "xl/styles.xml", styles) &&
                       addPart(archive, "xl/sharedStrings.xml", shared) &&
                       addPart(archive, "xl/worksheets/sheet1.xml", sheet);
    if (!added || zip_close(archive) != 0) {
        zip_discard(archive);
        return -1;
    }
    return QFileInfo(path).size();
}

long peakMemoryKiB()
{
#ifdef Q_OS_LINUX
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss; // kibibytes on Linux
#else
    return -1;
#endif
}

// Processor time of this process in seconds: on a machine shared with other work it says more
// than the elapsed time.
double processorSeconds()
{
#ifdef Q_OS_LINUX
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
#else
    return -1;
#endif
}

void printFigures(qint64 cells, double seconds, double cpuSeconds)
{
    std::printf("%lld %.6f %.6f %ld\n", cells, seconds, cpuSeconds, peakMemoryKiB());
}

// Reads every cell below the titles in row order the way the importer does.
int readOne(const QString& path)
{
    QElapsedTimer timer;
    timer.start();
    const double cpuStart = processorSeconds();
    CIExcel excel(path);
    if (!excel.isOpen()) {
        std::fprintf(stderr, "%s\n", qPrintable(excel.error().message()));
        return 1;
    }
    QStringList titles;
    for (int column = 0; column < kColumns; ++column)
        titles.append(QStringLiteral("TITLE %1").arg(column));
    const int headerRow = 1;
    const int rows = excel.VerifyRowCount(kSheet);
    qint64 cells = 0;
    qint64 characters = 0;
    for (int row = headerRow; row < rows; ++row) {
        for (const QString& title : std::as_const(titles)) {
            const int column = excel.GetColumnIndex(kSheet, title, headerRow);
            characters += excel.GetValue(kSheet, row, column).size();
            ++cells;
        }
    }
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    const double cpuSeconds = processorSeconds() - cpuStart;
    if (excel.error().isError() || characters == 0) {
        std::fprintf(stderr, "%s\n", qPrintable(excel.error().message()));
        return 1;
    }
    printFigures(cells, seconds, cpuSeconds);
    return 0;
}

// Streams the sheet part through QXmlStreamReader and nothing else.
int streamXmlOnly(const QString& path)
{
    QElapsedTimer timer;
    timer.start();
    const double cpuStart = processorSeconds();
    Xlsx::Internal::ZipPackage package{WorkbookLimits()};
    QString problem = package.open(path);
    auto device = problem.isEmpty()
                      ? package.openPart(QStringLiteral("xl/worksheets/sheet1.xml"), &problem)
                      : nullptr;
    if (!device) {
        std::fprintf(stderr, "%s\n", qPrintable(problem));
        return 1;
    }
    QXmlStreamReader xml(device.get());
    qint64 cells = 0;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == u"c")
            ++cells;
    }
    if (xml.hasError()) {
        std::fprintf(stderr, "%s\n", qPrintable(xml.errorString()));
        return 1;
    }
    printFigures(cells - kColumns, double(timer.nsecsElapsed()) / 1e9,
                 processorSeconds() - cpuStart);
    return 0;
}

// Runs this program with `arguments` and gives its standard output; empty on failure.
QStringList runChild(const QStringList& arguments, QTextStream& out)
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), arguments);
    if (!child.waitForFinished(-1) || child.exitStatus() != QProcess::NormalExit ||
        child.exitCode() != 0) {
        out << "failed: " << arguments.join(u' ') << ": " << child.readAllStandardError() << "\n";
        return {};
    }
    return QString::fromLatin1(child.readAllStandardOutput()).trimmed().split(u' ');
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QStringList arguments = app.arguments().mid(1);
    if (arguments.size() == 2 && arguments[0] == u"--read")
        return readOne(arguments[1]);
    if (arguments.size() == 2 && arguments[0] == u"--xml")
        return streamXmlOnly(arguments[1]);
    if (arguments.size() == 3 && arguments[0] == u"--write") {
        qint64 sheetBytes = 0;
        const qint64 fileBytes = writeWorkbook(arguments[1], arguments[2].toInt(), &sheetBytes);
        std::printf("%lld %lld\n", fileBytes, sheetBytes);
        return fileBytes < 0 ? 1 : 0;
    }

    QList<int> rowCounts;
    for (const QString& argument : std::as_const(arguments))
        rowCounts.append(argument.toInt());
    if (rowCounts.isEmpty())
        rowCounts = {1000, 10000, 100000};

    QTemporaryDir folder;
    QTextStream out(stdout);
    out << "rows\tcells\tfile KiB\tsheet XML KiB\tseconds\tCPU seconds\tcells/s\tcells/CPU s"
           "\tpeak KiB\tXML only: CPU seconds\tcells/CPU s\n";
    for (const int rows : std::as_const(rowCounts)) {
        const QString path = folder.filePath(QStringLiteral("bench-%1.xlsx").arg(rows));
        const QStringList written =
            runChild({QStringLiteral("--write"), path, QString::number(rows)}, out);
        const QStringList read = runChild({QStringLiteral("--read"), path}, out);
        const QStringList xmlOnly = runChild({QStringLiteral("--xml"), path}, out);
        if (written.size() < 2 || read.size() < 4 || xmlOnly.size() < 4)
            return 1;
        const qint64 cells = read[0].toLongLong();
        const double seconds = read[1].toDouble();
        const double cpuSeconds = read[2].toDouble();
        const double xmlCpuSeconds = xmlOnly[2].toDouble();
        out << rows << '\t' << cells << '\t' << written[0].toLongLong() / 1024 << '\t'
            << written[1].toLongLong() / 1024 << '\t' << QString::number(seconds, 'f', 3) << '\t'
            << QString::number(cpuSeconds, 'f', 3) << '\t' << qint64(double(cells) / seconds)
            << '\t' << qint64(double(cells) / cpuSeconds) << '\t' << read[3] << '\t'
            << QString::number(xmlCpuSeconds, 'f', 3) << '\t'
            << qint64(double(xmlOnly[0].toLongLong()) / xmlCpuSeconds) << '\n';
        out.flush();
    }
    return 0;
}
