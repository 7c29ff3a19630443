#include "common/MathAxis.h"

MathAxis::MathAxis(QObject* parent)
    : QObject(parent)
{
}

void MathAxis::setMin(double min)
{
    if (min == m_min)
        return;
    m_min = min;
    emit minChanged();
}

void MathAxis::setMax(double max)
{
    if (max == m_max)
        return;
    m_max = max;
    emit maxChanged();
}

void MathAxis::setStep(double step)
{
    if (step == m_step)
        return;
    m_step = step;
    emit stepChanged();
}

void MathAxis::setSpec(const vrn_Math_Axis_Spec_s& spec)
{
    setMin(spec.min);
    setMax(spec.max);
    setStep(spec.step);
}

vrn_Math_Axis_Spec_s MathAxis::spec() const
{
    return vrn_Math_Axis_Spec_s { m_min, m_max, m_step };
}
