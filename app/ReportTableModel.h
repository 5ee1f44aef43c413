#pragma once

#include <QAbstractTableModel>
#include <QList>
#include <QStringList>
#include <QVariant>

// The rows of one audit list as the core's reports give them: values kept as they are (numbers
// sort as numbers, a missing value stays null for the export), shown as text.
class ReportTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    // The raw value of a cell, for sorting and for the export.
    static constexpr int ValueRole = Qt::UserRole;

    explicit ReportTableModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}
    void setColumns(const QStringList& keys, const QStringList& headers);
    void setRows(const QList<QList<QVariant>>& rows);
    const QStringList& keys() const { return keys_; }
    const QList<QList<QVariant>>& rows() const { return rows_; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QStringList keys_;
    QStringList headers_;
    QList<QList<QVariant>> rows_;
};
