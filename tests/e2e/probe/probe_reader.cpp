// SPDX-License-Identifier: MIT
#include "tests/e2e/probe/probe_reader.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QIcon>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPixmap>
#include <QProgressBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTextEdit>
#include <QTreeView>

namespace
{
constexpr const char *number_property = "_virelo_probe_number";

void add_rect(QJsonObject &object, const QPoint &top_left, const QSize &size)
{
    object["x"] = top_left.x();
    object["y"] = top_left.y();
    object["w"] = size.width();
    object["h"] = size.height();
}

QJsonArray class_chain(const QMetaObject *meta)
{
    QJsonArray chain;
    for (; meta; meta = meta->superClass())
        chain.append(QString::fromLatin1(meta->className()));
    return chain;
}

bool has_picture(const QVariant &decoration)
{
    if (decoration.canConvert<QIcon>() && !decoration.value<QIcon>().isNull())
        return true;
    return decoration.canConvert<QPixmap>() && !decoration.value<QPixmap>().isNull();
}

// Depth first, as a user reads them. "parent" is the position of the parent row in the list, or -1.
void add_rows(QJsonArray &rows, const QAbstractItemView *view, const QModelIndex &parent, int parent_position)
{
    const QAbstractItemModel *model = view->model();
    const auto *tree = qobject_cast<const QTreeView *>(view);
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex first = model->index(row, 0, parent);
        QJsonArray texts;
        for (int column = 0; column < model->columnCount(parent); ++column)
            texts.append(model->index(row, column, parent).data().toString());
        QRect rect = view->visualRect(first);
        if (tree)
            rect.setWidth(tree->header()->length());
        QJsonObject object{{"texts", texts},
                           {"picture", has_picture(first.data(Qt::DecorationRole))},
                           {"parent", parent_position},
                           {"selected", view->selectionModel()->isSelected(first)},
                           {"editable", bool(model->flags(first) & Qt::ItemIsEditable)},
                           {"expanded", tree && tree->isExpanded(first)}};
        add_rect(object, view->viewport()->mapToGlobal(rect.topLeft()), rect.size());
        const int position = rows.size();
        rows.append(object);
        add_rows(rows, view, first, position);
    }
}

void add_view(QJsonObject &object, const QAbstractItemView *view)
{
    if (!view->model())
        return;
    QJsonArray rows;
    add_rows(rows, view, view->rootIndex(), -1);
    object["rows"] = rows;
    QJsonArray header;
    for (int column = 0; column < view->model()->columnCount(); ++column)
        header.append(view->model()->headerData(column, Qt::Horizontal).toString());
    object["header"] = header;
}

void add_tabs(QJsonObject &object, const QTabWidget *widget)
{
    const QTabBar *bar = widget->tabBar();
    QJsonArray tabs;
    for (int i = 0; i < widget->count(); ++i) {
        QJsonObject tab{{"title", widget->tabText(i)}, {"enabled", widget->isTabEnabled(i)}};
        const QRect rect = bar->tabRect(i);
        add_rect(tab, bar->mapToGlobal(rect.topLeft()), rect.size());
        tabs.append(tab);
    }
    object["tabs"] = tabs;
    object["current"] = widget->currentIndex();
}

void add_combo(QJsonObject &object, const QComboBox *combo)
{
    QJsonArray entries;
    for (int i = 0; i < combo->count(); ++i)
        entries.append(combo->itemText(i));
    object["entries"] = entries;
    object["current"] = combo->currentIndex();
    object["text"] = combo->currentText();
}

void add_range(QJsonObject &object, int value, int minimum, int maximum)
{
    object["value"] = value;
    object["minimum"] = minimum;
    object["maximum"] = maximum;
}

// What a widget shows, by its kind.
void add_content(QJsonObject &object, const QWidget *widget)
{
    if (widget->isWindow())
        object["text"] = widget->windowTitle();
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) {
        object["text"] = button->text();
        object["checkable"] = button->isCheckable();
        object["checked"] = button->isChecked();
    } else if (const auto *label = qobject_cast<const QLabel *>(widget)) {
        object["text"] = label->text();
        object["picture"] = label->pixmap(Qt::ReturnByValue).isNull() == false;
    } else if (const auto *line = qobject_cast<const QLineEdit *>(widget)) {
        object["text"] = line->text();
    } else if (const auto *edit = qobject_cast<const QTextEdit *>(widget)) {
        object["text"] = edit->toPlainText();
    } else if (const auto *slider = qobject_cast<const QAbstractSlider *>(widget)) {
        add_range(object, slider->value(), slider->minimum(), slider->maximum());
    } else if (const auto *bar = qobject_cast<const QProgressBar *>(widget)) {
        add_range(object, bar->value(), bar->minimum(), bar->maximum());
    } else if (const auto *combo = qobject_cast<const QComboBox *>(widget)) {
        add_combo(object, combo);
    } else if (const auto *tabs = qobject_cast<const QTabWidget *>(widget)) {
        add_tabs(object, tabs);
    } else if (qobject_cast<const QHeaderView *>(widget)) {
        // It is an item view too, on the model of the view that it belongs to.
    } else if (const auto *view = qobject_cast<const QAbstractItemView *>(widget)) {
        add_view(object, view);
    } else if (const auto *box = qobject_cast<const QMessageBox *>(widget)) {
        object["message"] = box->text();
    }
}
} // namespace

int Probe_Reader::number(QWidget *widget)
{
    if (!widget)
        return 0;
    int known = widget->property(number_property).toInt();
    if (known == 0) {
        known = ++last_number;
        widget->setProperty(number_property, known);
        by_number.insert(known, widget);
    }
    return known;
}

QWidget *Probe_Reader::widget(int number) const
{
    return by_number.value(number);
}

QJsonArray Probe_Reader::widgets(const QString &kind, bool hidden_too)
{
    QJsonArray result;
    const QWidgetList all = QApplication::allWidgets();
    for (QWidget *widget : all) {
        if (!widget->inherits(kind.toLatin1().constData()) || !(widget->isVisible() || hidden_too))
            continue;
        QJsonObject object{
            {"widget", number(widget)},
            {"parent", number(widget->parentWidget())},
            {"window", number(widget->window())},
            {"class", QString::fromLatin1(widget->metaObject()->className())},
            {"is", class_chain(widget->metaObject())},
            {"name", widget->objectName()},
            {"visible", widget->isVisible()},
            {"enabled", widget->isEnabled()},
            {"focus", widget->window()->focusWidget() == widget}, // no window manager makes one active
            {"active", widget->isActiveWindow()},
            {"modal", widget->isModal()}};
        add_rect(object, widget->mapToGlobal(QPoint(0, 0)), widget->size());
        add_content(object, widget);
        result.append(object);
    }
    return result;
}
