#pragma once
// The records the panels edit. Every published field announces the change
// (objectWillChange) before the new value is stored, on every assignment,
// then emits its own NOTIFY signal so that QML bindings follow it.
// Records compare and hash by `id` only.
#include <QHash>
#include <QObject>
#include <QString>
#include <QUuid>

#include <functional>

namespace dialcraft {

class CreateSetupAreaViewData : public QObject {
    Q_OBJECT
    Q_PROPERTY(QUuid id READ id WRITE setId NOTIFY idChanged)
    Q_PROPERTY(int knob_index READ knob_index WRITE set_knob_index NOTIFY knob_indexChanged)
    Q_PROPERTY(QString message_type_menu_string READ message_type_menu_string WRITE set_message_type_menu_string NOTIFY
                   message_type_menu_stringChanged)
    Q_PROPERTY(QString message_channel_menu_string READ message_channel_menu_string WRITE
                   set_message_channel_menu_string NOTIFY message_channel_menu_stringChanged)
    Q_PROPERTY(QString message_controller_number_code_string READ message_controller_number_code_string WRITE
                   set_message_controller_number_code_string NOTIFY message_controller_number_code_stringChanged)

public:
    explicit CreateSetupAreaViewData(int knobIndex, QObject* parent = nullptr);

    QUuid id() const { return id_; }
    void setId(const QUuid& id);  // not published: no announcement
    int knob_index() const { return knob_index_; }
    void set_knob_index(int value);
    QString message_type_menu_string() const { return message_type_menu_string_; }
    void set_message_type_menu_string(const QString& value);
    QString message_channel_menu_string() const { return message_channel_menu_string_; }
    void set_message_channel_menu_string(const QString& value);
    QString message_controller_number_code_string() const { return message_controller_number_code_string_; }
    void set_message_controller_number_code_string(const QString& value);

    // Stores the message type into raw slot `at` of the live table, appending
    // it when `at` is at or past the end.
    Q_INVOKABLE void updateConfigurationSettings(int at) const;

    bool operator==(const CreateSetupAreaViewData& other) const { return id_ == other.id_; }

signals:
    void objectWillChange();
    void idChanged();
    void knob_indexChanged();
    void message_type_menu_stringChanged();
    void message_channel_menu_stringChanged();
    void message_controller_number_code_stringChanged();

private:
    QUuid id_;
    int knob_index_;
    QString message_type_menu_string_;
    QString message_channel_menu_string_;
    QString message_controller_number_code_string_;
};

class CreateConfigAreaViewData : public QObject {
    Q_OBJECT
    Q_PROPERTY(QUuid id READ id WRITE setId NOTIFY idChanged)
    Q_PROPERTY(int knob_index READ knob_index WRITE set_knob_index NOTIFY knob_indexChanged)

public:
    explicit CreateConfigAreaViewData(int knobIndex, QObject* parent = nullptr);

    QUuid id() const { return id_; }
    void setId(const QUuid& id);
    int knob_index() const { return knob_index_; }
    void set_knob_index(int value);

    bool operator==(const CreateConfigAreaViewData& other) const { return id_ == other.id_; }

signals:
    void objectWillChange();
    void idChanged();
    void knob_indexChanged();

private:
    QUuid id_;
    int knob_index_;
};

inline size_t qHash(const CreateSetupAreaViewData& record, size_t seed = 0)
{
    return qHash(record.id(), seed);
}
inline size_t qHash(const CreateConfigAreaViewData& record, size_t seed = 0)
{
    return qHash(record.id(), seed);
}

}  // namespace dialcraft

template <>
struct std::hash<dialcraft::CreateSetupAreaViewData> {
    size_t operator()(const dialcraft::CreateSetupAreaViewData& r) const noexcept { return qHash(r.id()); }
};
template <>
struct std::hash<dialcraft::CreateConfigAreaViewData> {
    size_t operator()(const dialcraft::CreateConfigAreaViewData& r) const noexcept { return qHash(r.id()); }
};
