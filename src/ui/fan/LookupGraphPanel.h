#pragma once

#include <QWidget>

#include <array>

class QFrame;
class QLabel;

namespace ztm {

class LookupGraph;

/// The graph of the automatic control window with the numbers of its grid lines, the names of its
/// axes and the legend around it. The graph keeps its proportions in the middle of the panel and
/// grows with it; the numbers are as large as the line spacing allows, up to the panel's font.
class LookupGraphPanel final : public QWidget {
    Q_OBJECT

public:
    explicit LookupGraphPanel(QWidget *parent);

    LookupGraph &Graph() { return *pctGraph; }

    /// Shows the speeds of the grid lines up to `GraphRpmRange`.
    void UpdateRPMLabels();

    void HideLegend();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QLabel *NewLabel(const QString &name, const QString &text);
    void SetupLegend();
    QMargins Surroundings() const;
    void SetUpGraphLabels();
    void SetUpTempLabels(const QRect &graph);
    void SetUpRPMLabels(const QRect &graph);

    static constexpr int temperatureLabels = 16;
    static constexpr int firstRpmLabel = 2;
    static constexpr int lastRpmLabel = 12;

    LookupGraph *pctGraph;
    std::array<QLabel *, temperatureLabels> lblTemp{};
    std::array<QLabel *, lastRpmLabel + 1> lblRPM{}; // 2 to 12, from the top down
    QLabel *lblTempAxis;
    QLabel *lblRPMAxis;
    QWidget *legend;
    QFrame *Line1;
    QLabel *Label5;
    QFrame *Line2;
    QLabel *Label6;
};

} // namespace ztm
