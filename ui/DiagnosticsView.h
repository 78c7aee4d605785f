#pragma once

#include "report/ReportGenerator.h"
#include "ui/kit/Builders.h"

namespace orvalen {

class AppState;

/// The tab "Diagnostics": the report for a technician, and what a person can find out and should know.
class DiagnosticsView : public kit::Ground
{
    Q_OBJECT

public:
    DiagnosticsView(AppState &state, const ReportGenerator::Services &report, QWidget *parent = nullptr);

private:
    QWidget *reportCard();
    QWidget *reportStatus();
    static QWidget *verdictCard();
    static QWidget *verdict(const QString &icon, const kit::Accent &color, const QString &words);
    static QWidget *flashlightCard();
    static QWidget *safetyCard();

    void writeReport();

    AppState &state;
    ReportGenerator::Services report;
};

} // namespace orvalen
