#include "ui/modal/QtFileDialogs.h"

#include "ui/base/QtApplication.h"
#include "ui/base/QtText.h"
#include "ui/modal/QtModal.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>

#include <algorithm>

namespace {

/// A type's extensions without the dot.
QStringList ExtensionsOf(const TFileFilter& filter) {
    QStringList lstExtensions;
    for (const QString& strPattern : ToQt(filter.strPattern).split(QLatin1Char(';'), Qt::SkipEmptyParts))
        lstExtensions << strPattern.trimmed().section(QLatin1Char('.'), -1);
    return lstExtensions;
}

int FilterOf(const QString& strExtension, const TFileDialog& dialog) {
    for (size_t idx = 0; idx < dialog.vFilters.size(); ++idx)
        if (ExtensionsOf(dialog.vFilters[idx]).contains(strExtension, Qt::CaseInsensitive))
            return static_cast<int>(idx);
    return -1;
}

/// The name's extension if the dialog knows it; "v1.2" has none.
QString KnownExtension(const QString& strName, const TFileDialog& dialog) {
    const QString strExtension = QFileInfo(strName).suffix();
    const bool bKnown = FilterOf(strExtension, dialog) >= 0 ||
                        strExtension.compare(ToQt(dialog.strDefaultExtension), Qt::CaseInsensitive) == 0;
    return bKnown ? strExtension : QString();
}

QString FirstExtension(const TFileDialog& dialog, int nFilter) {
    if (nFilter >= 0 && nFilter < static_cast<int>(dialog.vFilters.size())) {
        const QStringList lstExtensions = ExtensionsOf(dialog.vFilters[static_cast<size_t>(nFilter)]);
        if (!lstExtensions.isEmpty() && lstExtensions.front() != QLatin1String("*"))
            return lstExtensions.front();
    }
    return ToQt(dialog.strDefaultExtension);
}

bool ConfirmOverwrite(QWidget* pParent, const QString& strPath) {
    const CModalOwner<QMessageBox> pBox(pParent);
    pBox->setWindowTitle(ToQt(L"上書きの確認"));
    pBox->setTextFormat(Qt::PlainText);
    pBox->setText(ToQt(L"%1 は既に存在します。\n上書きしますか？").arg(QFileInfo(strPath).fileName()));
    pBox->setIcon(QMessageBox::Warning);
    pBox->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    pBox->button(QMessageBox::Yes)->setText(ToQt(ModalText::YES));
    pBox->button(QMessageBox::No)->setText(ToQt(ModalText::NO));
    pBox->setDefaultButton(QMessageBox::No);
    return pBox.Run() == QMessageBox::Yes;
}

/// Sets the dialog's types and Japanese texts.
void PrepareDialog(QFileDialog& fileDialog, const TFileDialog& dialog, const QStringList& lstFilters) {
    fileDialog.setOption(QFileDialog::DontUseNativeDialog);
    // Overwriting is confirmed once, by our code, after the name has its extension.
    fileDialog.setOption(QFileDialog::DontConfirmOverwrite);
    fileDialog.setAcceptMode(dialog.bSave ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    fileDialog.setFileMode(dialog.bSave ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    fileDialog.setNameFilters(lstFilters);
    const QString strAction = ToQt(dialog.bSave ? L"保存(&S)" : L"開く(&O)");
    const std::wstring strUsual = dialog.bSave ? L"名前を付けて保存" : L"開く";
    fileDialog.setWindowTitle(ToQt(dialog.strTitle.empty() ? strUsual : dialog.strTitle));
    fileDialog.setLabelText(QFileDialog::Accept, strAction);
    fileDialog.setLabelText(QFileDialog::Reject, ToQt(ModalText::CANCEL));
    fileDialog.setLabelText(QFileDialog::LookIn, ToQt(L"場所:"));
    fileDialog.setLabelText(QFileDialog::FileName, ToQt(L"ファイル名(&N):"));
    fileDialog.setLabelText(QFileDialog::FileType, ToQt(L"ファイルの種類:"));
    // Wide enough for the columns.
    fileDialog.resize(820, 520);
    const QFileInfo info(ToQt(dialog.strName));
    if (info.isAbsolute()) fileDialog.setDirectory(info.absolutePath());
    if (!info.fileName().isEmpty()) fileDialog.selectFile(info.fileName());
}

} // namespace

QString NameFilterOf(const TFileFilter& filter) {
    static const QRegularExpression rePatterns(QStringLiteral("\\s*\\([^()]*\\)\\s*$"));
    QString strPatterns = ToQt(filter.strPattern);
    return QStringLiteral("%1 (%2)").arg(ToQt(filter.strText).remove(rePatterns),
                                         strPatterns.replace(QLatin1Char(';'), QLatin1Char(' ')));
}

QString ReplaceExtension(const QString& strName, const TFileDialog& dialog, int nFilter) {
    const QString strOld = KnownExtension(strName, dialog);
    return strOld.isEmpty() ? strName : strName.chopped(strOld.size()) + FirstExtension(dialog, nFilter);
}

QString CompleteName(const QString& strName, const TFileDialog& dialog, int nFilter) {
    if (!KnownExtension(strName, dialog).isEmpty()) return strName;
    const QString strExtension = FirstExtension(dialog, nFilter);
    return strExtension.isEmpty() ? strName : strName + QLatin1Char('.') + strExtension;
}

std::wstring CQtFileDialogs::Ask(IWindow* pOwner, const TFileDialog& dialog) {
    if (!EnsureApplication()) return {};
    QStringList lstFilters;
    for (const TFileFilter& filter : dialog.vFilters) lstFilters << NameFilterOf(filter);
    const CModalOwner<QFileDialog> pDialog(ModalParent(pOwner));
    PrepareDialog(*pDialog, dialog, lstFilters);
    const auto getFilter = [&] {
        return static_cast<int>(lstFilters.indexOf(pDialog->selectedNameFilter()));
    };
    if (dialog.bSave) {
        const int nFilter = FilterOf(QFileInfo(ToQt(dialog.strName)).suffix(), dialog);
        if (nFilter >= 0) pDialog->selectNameFilter(lstFilters[nFilter]);
        auto* pName = pDialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        QObject::connect(pDialog.get(), &QFileDialog::filterSelected, pDialog.get(),
                         [&dialog, pName, getFilter] {
                             if (pName) pName->setText(ReplaceExtension(pName->text(), dialog, getFilter()));
                         });
    }
    while (pDialog && pDialog.Run() == QDialog::Accepted) {
        const QStringList lstFiles = pDialog->selectedFiles();
        if (lstFiles.isEmpty()) break;
        const QString strChosen =
            dialog.bSave ? CompleteName(lstFiles.front(), dialog, getFilter()) : lstFiles.front();
        if (!dialog.bSave || !QFileInfo::exists(strChosen) ||
            ConfirmOverwrite(pDialog->parentWidget(), strChosen))
            return FromQt(strChosen);
    }
    return {};
}
