#pragma once
// The words of Qt's own file dialog, the one shown where the desktop offers
// no native dialog, in the window's bilingual style. That dialog's labels are
// plain qsTr() texts with no property to set, so a translator installed on
// the application gives them: "Filter" becomes "筛选(Filter)" and
// "File name" "文件名(File name)". Native dialogs speak the desktop's
// language and never ask for these.
#include <QCoreApplication>
#include <QString>
#include <QTranslator>

namespace dialcraft {

class DialogWords : public QTranslator {
    Q_OBJECT

public:
    using QTranslator::QTranslator;

    // The label of the save dialog's name field and of both dialogs' filter.
    static const QString file_name_label;
    static const QString filter_label;
    // The one entry of both dialogs' filter menu. Qt's own dialog takes the
    // globs from the first ASCII parenthesis on, so the English name sits in
    // full-width ones.
    static const QString text_files_filter;

    QString translate(const char* context, const char* source_text, const char* disambiguation = nullptr,
                      int n = -1) const override;
    bool isEmpty() const override { return false; }
};

// Installs the dialog's words on `app` once; later calls do nothing.
void install_dialog_words(QCoreApplication& app);

}  // namespace dialcraft
