#include "settings/CEArquivoCfg.h"
#include "settings/CECampoCfg.h"
#include "settings/CELstAtributos.h"
#include "settings/CELstCampoCfg.h"
#include "settings/SettingsModes.h"

#include <QtTest>

#include <memory>
#include <stdexcept>

class TestSettingsModel : public QObject
{
    Q_OBJECT

private slots:
    void fieldRowKeepsItsTexts();
    void blockRowLeavesFieldTextsEmpty();
    void positionDefault_data();
    void positionDefault();
    void angleDefault_data();
    void angleDefault();
    void listKeepsOrderAndCount();
    void listIndexOutsideRangeThrows_data();
    void listIndexOutsideRangeThrows();
    void destroyingListLeavesRowsAlive();
    void lastReferenceDeletesRows();
    void arquivoStartsEmpty();
    void arquivoSharedRowOutlivesArquivo();
    void arquivoIndexOutsideRangeThrows();
    void attributeListOwnsItsTexts();
    void separatorModes_data();
    void separatorModes();
    void paginationModes_data();
    void paginationModes();
    void modeEntryTexts();
};

void TestSettingsModel::fieldRowKeepsItsTexts()
{
    const CECampoCfg row(QStringLiteral("Tag"), QStringLiteral("TAG"), QStringLiteral("TAG="),
                         true);
    QCOMPARE(QString(row.fieldName()), QStringLiteral("Tag"));
    QCOMPARE(QString(row.attribute()), QStringLiteral("TAG"));
    QCOMPARE(QString(row.search()), QStringLiteral("TAG="));
    QVERIFY(row.show());
    QVERIFY(row.blockName().isEmpty());
    QVERIFY(row.position().isEmpty());
    QVERIFY(row.angle().isEmpty());
    QVERIFY(
        !CECampoCfg(QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), false).show());
}

void TestSettingsModel::blockRowLeavesFieldTextsEmpty()
{
    const CECampoCfg row(QStringLiteral("LEGEND"), QStringLiteral("10,20"), QStringLiteral("90"));
    QCOMPARE(QString(row.blockName()), QStringLiteral("LEGEND"));
    QCOMPARE(QString(row.position()), QStringLiteral("10,20"));
    QCOMPARE(QString(row.angle()), QStringLiteral("90"));
    QVERIFY(row.fieldName().isEmpty());
    QVERIFY(row.attribute().isEmpty());
    QVERIFY(row.search().isEmpty());
}

void TestSettingsModel::positionDefault_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("position");
    QTest::newRow("one blank") << " "
                               << "0,0";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("two blanks") << "  "
                                << "  ";
    QTest::newRow("tab") << "\t"
                         << "\t";
    QTest::newRow("point") << "1.5,2"
                           << "1.5,2";
}

void TestSettingsModel::positionDefault()
{
    QFETCH(QString, stored);
    QFETCH(QString, position);
    const CECampoCfg row(QStringLiteral("B"), stored, QStringLiteral("0"));
    QCOMPARE(QString(row.position()), position);
    QCOMPARE(QString(row.storedPosition()), stored);
}

void TestSettingsModel::angleDefault_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("angle");
    QTest::newRow("one blank") << " "
                               << "0";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("two blanks") << "  "
                                << "  ";
    QTest::newRow("angle") << "270"
                           << "270";
}

void TestSettingsModel::angleDefault()
{
    QFETCH(QString, stored);
    QFETCH(QString, angle);
    const CECampoCfg row(QStringLiteral("B"), QStringLiteral("0,0"), stored);
    QCOMPARE(QString(row.angle()), angle);
    QCOMPARE(QString(row.storedAngle()), stored);
}

void TestSettingsModel::listKeepsOrderAndCount()
{
    CECampoCfg first(QStringLiteral("A"), QStringLiteral("0,0"), QStringLiteral("0"));
    CECampoCfg second(QStringLiteral("B"), QStringLiteral("1,1"), QStringLiteral("90"));
    CELstCampoCfg list;
    QCOMPARE(list.count(), 0);
    QVERIFY(list.isEmpty());
    list.append(&first);
    list.append(&second);
    list.append(&first);
    QCOMPARE(list.count(), 3);
    QCOMPARE(list.at(0), &first);
    QCOMPARE(list.at(1), &second);
    QCOMPARE(list.at(2), &first);
}

void TestSettingsModel::listIndexOutsideRangeThrows_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("index");
    QTest::newRow("empty list, 0") << 0 << 0;
    QTest::newRow("negative") << 2 << -1;
    QTest::newRow("one past the end") << 2 << 2;
    QTest::newRow("far past the end") << 2 << 1000;
}

void TestSettingsModel::listIndexOutsideRangeThrows()
{
    QFETCH(int, count);
    QFETCH(int, index);
    CECampoCfg row(QStringLiteral("A"), QStringLiteral("0,0"), QStringLiteral("0"));
    CELstCampoCfg list;
    for (int i = 0; i < count; ++i)
        list.append(&row);
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, list.at(index));
}

void TestSettingsModel::destroyingListLeavesRowsAlive()
{
    auto owner = std::make_shared<CECampoCfg>(QStringLiteral("Tag"), QStringLiteral("TAG"),
                                              QStringLiteral(" "), true);
    std::weak_ptr<CECampoCfg> watch = owner;
    auto* list = new CELstCampoCfg;
    list->append(owner.get());
    list->append(owner.get());
    delete list;
    // The rows the list pointed at are untouched by its destruction.
    QVERIFY(!watch.expired());
    QCOMPARE(QString(owner->fieldName()), QStringLiteral("Tag"));
    QCOMPARE(QString(owner->search()), QStringLiteral(" "));
}

void TestSettingsModel::lastReferenceDeletesRows()
{
    std::weak_ptr<const CECampoCfg> watch;
    {
        auto arquivo = std::make_unique<CEArquivoCfg>();
        arquivo->ReadListFile(); // no file open: reads as an empty file, one default row
        QCOMPARE(arquivo->rowCount(), 1);
        watch = arquivo->sharedRow(0);
        QVERIFY(!watch.expired());
        {
            const CELstCampoCfg copy = arquivo->rows();
            QCOMPARE(copy.count(), 1);
        }
        QVERIFY(!watch.expired());
    }
    // The object that read the rows held the last reference.
    QVERIFY(watch.expired());
}

void TestSettingsModel::arquivoStartsEmpty()
{
    CEArquivoCfg arquivo;
    QCOMPARE(arquivo.fieldCount(), 0);
    QCOMPARE(arquivo.rowCount(), 0);
    QVERIFY(arquivo.gapBeforeVar().isEmpty());
    QVERIFY(arquivo.gapAfterVar().isEmpty());
    QVERIFY(arquivo.startPoint().isEmpty());
    QVERIFY(arquivo.spaceWidth().isEmpty());
    QVERIFY(arquivo.separatorMode().isEmpty());
    QVERIFY(arquivo.pageSize().isEmpty());
    QVERIFY(arquivo.pageMode().isEmpty());
    QCOMPARE(arquivo.CloseMainFile(), 0);
    QCOMPARE(arquivo.CloseListFile(), 0);
}

void TestSettingsModel::arquivoSharedRowOutlivesArquivo()
{
    std::shared_ptr<const CECampoCfg> kept;
    {
        CEArquivoCfg arquivo;
        arquivo.ReadListFile();
        kept = arquivo.sharedRow(0);
        QCOMPARE(kept.get(), arquivo.row(0));
    }
    QCOMPARE(QString(kept->blockName()), QStringLiteral("..."));
    QCOMPARE(QString(kept->position()), QStringLiteral("0,0"));
    QCOMPARE(QString(kept->angle()), QStringLiteral("0"));
}

void TestSettingsModel::arquivoIndexOutsideRangeThrows()
{
    CEArquivoCfg arquivo;
    arquivo.ReadListFile();
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, arquivo.field(0));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, arquivo.sharedField(0));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, arquivo.row(1));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, arquivo.sharedRow(-1));
}

void TestSettingsModel::attributeListOwnsItsTexts()
{
    CELstAtributos list;
    QVERIFY(list.isEmpty());
    {
        QString text = QStringLiteral("TAG=K1");
        list.append(text);
        text = QStringLiteral("changed");
    }
    list.append(QStringLiteral("DESC=Motor"));
    QCOMPARE(list.count(), 2);
    QCOMPARE(QString(list.at(0)), QStringLiteral("TAG=K1"));
    QCOMPARE(QString(list.at(1)), QStringLiteral("DESC=Motor"));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, list.at(2));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, list.at(-1));
}

void TestSettingsModel::separatorModes_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("mode"); // -1: nothing selected
    QTest::newRow("0") << "0" << 0;
    QTest::newRow("1") << "1" << 1;
    QTest::newRow("4") << "4" << 4;
    QTest::newRow("5 is outside") << "5" << -1;
    QTest::newRow("-1") << "-1" << -1;
    QTest::newRow("empty") << "" << -1;
    QTest::newRow("not a number reads as 0") << "abc" << 0;
    QTest::newRow("leading number") << "3x" << 3;
}

void TestSettingsModel::separatorModes()
{
    QFETCH(QString, stored);
    QFETCH(int, mode);
    const auto selected = separatorModeFromText(stored);
    QCOMPARE(selected ? static_cast<int>(*selected) : -1, mode);
}

void TestSettingsModel::paginationModes_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("mode");
    QTest::newRow("1 selects Using Page") << "1" << int(PaginationMode::UsingPage);
    QTest::newRow("0 selects Create page") << "0" << int(PaginationMode::CreatePage);
    QTest::newRow("-1 selects nothing") << "-1" << -1;
    QTest::newRow("2 is outside") << "2" << -1;
    QTest::newRow("empty selects nothing") << "" << -1;
}

void TestSettingsModel::paginationModes()
{
    QFETCH(QString, stored);
    QFETCH(int, mode);
    const auto selected = paginationModeFromText(stored);
    QCOMPARE(selected ? static_cast<int>(*selected) : -1, mode);
    if (selected)
        QCOMPARE(paginationModeTexts().at(mode),
                 mode == 1 ? QStringLiteral("Using Page") : QStringLiteral("Create page"));
}

void TestSettingsModel::modeEntryTexts()
{
    QCOMPARE(separatorModeTexts(), QStringList({"Automatic", "Automatic+space", "Horizontal space",
                                                "Page", "Vertical space"}));
    QCOMPARE(int(SeparatorMode::Automatic), 0);
    QCOMPARE(int(SeparatorMode::AutomaticSpace), 1);
    QCOMPARE(int(SeparatorMode::HorizontalSpace), 2);
    QCOMPARE(int(SeparatorMode::Page), 3);
    QCOMPARE(int(SeparatorMode::VerticalSpace), 4);
    // The pagination list is sorted; its English texts are already in that order.
    QStringList sorted = paginationModeTexts();
    sorted.sort();
    QCOMPARE(paginationModeTexts(), sorted);
    QCOMPARE(kNoModeChosen, -1);
}

QTEST_GUILESS_MAIN(TestSettingsModel)
#include "tst_settings_model.moc"
