#pragma once

#include <QDateTime>
#include <QString>

#include <random>

namespace yrw {

/// One invented customer.
struct SampleCustomer {
    QString number;
    QString name;
    QString contact;
    QString street;
    QString town;
    QString postcode;
    QString phone;
    QString email;
    QDateTime since;
    int orders = 0; ///< how many orders follow
};

/// One invented order.
struct SampleOrder {
    QString number;
    QString item;
    int quantity = 1;
    double amount = 0;
    QDateTime date;
    QString state;
};

/// Invents believable customers and orders, the same ones every time.
///
/// Nobody real is among them: the telephone numbers are of the range kept for fiction and the
/// mail addresses end in ".example".
class DeskSampleData {
public:
    /// `customers` is how many will be asked for: a very large set gets fewer orders each.
    /// Dates lie before `today`.
    DeskSampleData(qint64 customers, QDate today);

    [[nodiscard]] SampleCustomer nextCustomer();
    /// An order of the customer that came last.
    [[nodiscard]] SampleOrder nextOrder();

private:
    [[nodiscard]] int below(int bound);
    template <class Table>
    [[nodiscard]] QString pick(const Table& table);
    [[nodiscard]] QString businessName();
    [[nodiscard]] int orderCount();
    /// A moment of that day's opening hours.
    [[nodiscard]] QDateTime workingTime(QDate day);

    qint64 m_customers;
    QDate m_today;
    std::mt19937 m_random;
    qint64 m_customerNumber = 0;
    qint64 m_orderNumber = 0;
    QDate m_since;
};

} // namespace yrw
