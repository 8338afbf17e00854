#pragma once

#include <QWidget>

class QGridLayout;

namespace orvelle {

struct AboutLicence;

/// What Orvelle consists of, a line each: name, licence, and its text to read.
class AboutLicencesView : public QWidget
{
    Q_OBJECT

public:
    explicit AboutLicencesView(QWidget *parent = nullptr);

private:
    void addLine(QGridLayout *grid, const AboutLicence &licence);
    void showText(const AboutLicence &licence);
};

} // namespace orvelle
