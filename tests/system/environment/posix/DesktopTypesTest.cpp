#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/ImageFile/ImageFile.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/TempFolder.h"

#include "TestPaths.h"

#include <QDir>
#include <QMimeDatabase>

TEST(DesktopTypes, TheDesktopEntryNamesWhatIsOpenedAndAProjectIsKnownByItsBytes) {
    const QString strFiles = VELLUM_SOURCE "/packaging/jp.vellumcraft.Vellumcraft";
    const CTempFolder folder;
    const QDir types(QString::fromStdString(folder.File("mime/packages").native()));
    ASSERT_TRUE(types.mkpath(".") && QFile::copy(strFiles + ".mime.xml", types.filePath("vellumcraft.xml")));
    qputenv("XDG_DATA_HOME", folder.GetPath().c_str());
    const QMimeDatabase database;

    QStringList lstOpened;
    for (const QString& str : QString::fromStdWString(GetOpenFilters()[0].strPattern).split(';'))
        lstOpened
            << database.mimeTypeForFile(QString(str).replace('*', 'a'), QMimeDatabase::MatchExtension).name();
    lstOpened.removeDuplicates();
    lstOpened.sort();
    QFile entry(strFiles + ".desktop");
    ASSERT_TRUE(entry.open(QFile::ReadOnly));
    EXPECT_TRUE(entry.readAll().contains("\nMimeType=" + lstOpened.join(';').toUtf8() + ";\n"))
        << lstOpened.join(';').toStdString();

    CMemoryFiles files;
    SaveDocument(*CreateCanvas({10, 20}), L"a.vlm", files);
    const auto bytes = QByteArray::fromStdString(files.m_mapFiles[L"a.vlm"]);
    EXPECT_EQ(database.mimeTypeForData(bytes).name(), "application/x-vellumcraft");
    EXPECT_NE(database.mimeTypeForData(bytes.first(12)).name(), "application/x-vellumcraft");
}
