#include "ui/instruments/StripChart.h"

#include "ui/instruments/StripChartPlot.h"
#include "ui/kit/FileDialogs.h"
#include "ui/kit/Messages.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QSaveFile>

#ifdef QT_SVG_LIB
#include <QSvgGenerator>
#endif

#include <cmath>

namespace ztm {
void StripChart::contextMenuEvent(QContextMenuEvent *event) {
    if (menu) {
        return; // asked twice, by key and by the window system
    }
    drag.reset();
    menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    FillMenu(*menu);
    menu->popup(event->globalPos());
    event->accept();
}

void StripChart::FillMenu(QMenu &target) {
    const auto add = [&](const QString &text, const QKeySequence &key, auto handler) {
        QAction *action = target.addAction(text, this, handler);
        action->setShortcut(key); // shown only: keyPressEvent acts on it
        action->setShortcutContext(Qt::WidgetShortcut);
        return action;
    };
    const bool any = !history.IsEmpty();
    add(tr("&Fit Values"), Qt::Key_Home, &StripChart::Fit)->setEnabled(any);
    target.addAction(tr("Show &Whole History"), this, &StripChart::ShowWholeHistory)
        ->setEnabled(any);
    target.addAction(tr("&Original Scales"), this, &StripChart::RestoreScales);
    add(tr("Back to &Live"), Qt::Key_End, &StripChart::BackToLive)->setEnabled(!live);
    target.addSeparator();
    target.addAction(tr("&Copy Picture"), this, &StripChart::CopyPicture);
    target.addAction(tr("&Save Picture..."), this, &StripChart::AskAndSavePicture);
    target.addAction(tr("Save Visible &Range..."), this, &StripChart::AskAndSaveVisibleRange)
        ->setEnabled(any);
}

void StripChart::CopyPicture() const {
    QGuiApplication::clipboard()->setPixmap(
        plot->toPixmap(plot->width(), plot->height(), plot->bufferDevicePixelRatio()));
}

bool StripChart::SavePicture(const QString &path) const {
    const QString ending = path.section(QLatin1Char('.'), -1).toLower();
    if (ending == QLatin1String("pdf")) {
        return plot->savePdf(path, plot->width(), plot->height());
    }
#ifdef QT_SVG_LIB
    if (ending == QLatin1String("svg")) {
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly)) {
            return false;
        }
        QSvgGenerator generator;
        generator.setOutputDevice(&file);
        generator.setSize(plot->size());
        generator.setResolution(plot->logicalDpiX()); // texts as large as on the screen
        generator.setViewBox(QRect(QPoint(), plot->size()));
        QCPPainter painter;
        if (!painter.begin(&generator)) {
            return false;
        }
        painter.setMode(QCPPainter::pmVectorized);
        plot->toPainter(&painter, plot->width(), plot->height());
        painter.end();
        return file.commit();
    }
#endif
    if (ending != QLatin1String("png")) {
        return false;
    }
    return plot->savePng(path, plot->width(), plot->height(), plot->bufferDevicePixelRatio());
}

bool StripChart::SaveVisibleRange(const QString &path) const {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    std::vector<StripChartSetup::Trace> shown;
    for (const auto &trace : setup.traces) {
        if (history.HasValues(trace.channel)) {
            shown.push_back(trace);
        }
    }
    // Where only extremes are kept, each trace has two columns.
    const bool single = history.IsRawFrom(VisibleFrom());
    QByteArray line = "Seconds\tTime";
    for (const auto &trace : shown) {
        const QByteArray name = NameOf(trace).toUtf8();
        line += '\t' + (single ? name : name + " low\t" + name + " high");
    }
    file.write(line + '\n');
    const auto number = [](float value) {
        return std::isnan(value) ? QByteArray() : QByteArray::number(value, 'g', 7);
    };
    history.Visit(VisibleFrom(), VisibleTo(),
                  [&](double time, const auto &lows, const auto &highs) {
                      line = QByteArray::number(time, 'f', 3) + '\t' +
                             TimeOfDayText(time, QLatin1Char(':'), 3).toLatin1();
                      for (const auto &trace : shown) {
                          const auto channel = static_cast<size_t>(trace.channel);
                          line += '\t' + number(lows[channel]);
                          if (!single) {
                              line += '\t' + number(highs[channel]);
                          }
                      }
                      file.write(line + '\n');
                  });
    return file.commit();
}

void StripChart::AskAndSavePicture() {
    QString kinds = tr("PNG picture (*.png);;PDF document (*.pdf)");
#ifdef QT_SVG_LIB
    kinds += tr(";;SVG drawing (*.svg)");
#endif
    const QString path = AskSaveFileOfKind(this, tr("Save Picture"), kinds);
    if (!path.isEmpty() && !SavePicture(path)) {
        ShowMessage(tr("The picture could not be saved as\n%1").arg(path), tr("Save Picture"),
                    QMessageBox::Warning);
    }
}

void StripChart::AskAndSaveVisibleRange() {
    const QString path =
        AskSaveFileOfKind(this, tr("Save Visible Range"), tr("Tab-separated text (*.txt *.tsv)"));
    if (!path.isEmpty() && !SaveVisibleRange(path)) {
        ShowMessage(tr("The values could not be saved as\n%1").arg(path), tr("Save Visible Range"),
                    QMessageBox::Warning);
    }
}

} // namespace ztm
