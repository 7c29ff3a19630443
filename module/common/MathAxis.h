#pragma once

#include "sdk/vrn.h"

#include <QObject>

// The range of a chart axis as the SDK computed it, for the pages.
class MathAxis : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double min READ min WRITE setMin NOTIFY minChanged)
    Q_PROPERTY(double max READ max WRITE setMax NOTIFY maxChanged)
    Q_PROPERTY(double step READ step WRITE setStep NOTIFY stepChanged)
public:
    explicit MathAxis(QObject* parent = nullptr);

    double min() const { return m_min; }
    void setMin(double min);
    double max() const { return m_max; }
    void setMax(double max);
    double step() const { return m_step; }
    void setStep(double step);

    void setSpec(const vrn_Math_Axis_Spec_s& spec);
    vrn_Math_Axis_Spec_s spec() const;

signals:
    void minChanged();
    void maxChanged();
    void stepChanged();

private:
    // Compared exactly: axis steps can be far below any settings tolerance
    // (a few millimetres of range, a few hertz of frequency).
    double m_min = 0.0;
    double m_max = 0.0;
    double m_step = 0.0;
};
