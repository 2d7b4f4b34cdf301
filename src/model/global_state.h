#pragma once
// The application's observable state: the text area's text, the chosen model
// serial, the 36 knob records and the device panel's record.
#include <QList>
#include <QObject>
#include <QString>

#include "model/knob_record.h"

namespace dialcraft {

// The instruction text shown before anything else has been written.
extern const QString initial_full_text;

class GlobalState : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString fullText READ fullText WRITE setFullText NOTIFY fullTextChanged)
    Q_PROPERTY(QString machine_type_menu_string READ machine_type_menu_string WRITE set_machine_type_menu_string NOTIFY
                   machine_type_menu_stringChanged)
    Q_PROPERTY(QList<dialcraft::CreateSetupAreaViewData*> SetupAreaData READ SetupAreaData WRITE setSetupAreaData NOTIFY
                   SetupAreaDataChanged)
    Q_PROPERTY(dialcraft::CreateConfigAreaViewData* ConfigAreaData READ ConfigAreaData WRITE setConfigAreaData NOTIFY
                   ConfigAreaDataChanged)

public:
    explicit GlobalState(QObject* parent = nullptr);

    QString fullText() const { return fullText_; }
    void setFullText(const QString& value);
    QString machine_type_menu_string() const { return machine_type_menu_string_; }
    void set_machine_type_menu_string(const QString& value);
    QList<CreateSetupAreaViewData*> SetupAreaData() const { return SetupAreaData_; }
    void setSetupAreaData(const QList<CreateSetupAreaViewData*>& value);
    CreateConfigAreaViewData* ConfigAreaData() const { return ConfigAreaData_; }
    void setConfigAreaData(CreateConfigAreaViewData* value);

    // Knob record i, for QML and for callers that index the list.
    Q_INVOKABLE dialcraft::CreateSetupAreaViewData* record(int i) const;

signals:
    void objectWillChange();
    void fullTextChanged();
    void machine_type_menu_stringChanged();
    void SetupAreaDataChanged();
    void ConfigAreaDataChanged();

private:
    QString fullText_;
    QString machine_type_menu_string_;
    QList<CreateSetupAreaViewData*> SetupAreaData_;
    CreateConfigAreaViewData* ConfigAreaData_;
};

}  // namespace dialcraft
