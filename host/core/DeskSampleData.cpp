#include "host/core/DeskSampleData.h"

#include <array>
#include <iterator>

namespace yrw {

namespace {

constexpr unsigned kSeed = 1851;
/// Above this many customers an order is the exception: the grid is to be tried, not the disk.
constexpr qint64 kManyCustomers = 20000;

constexpr const char16_t* kFirstNames[] = {
    u"Agnes",  u"Albert", u"Beatrice", u"Cedric", u"Clara",  u"Conor",  u"Daphne", u"Edwin",
    u"Elsie",  u"Farida", u"Felix",    u"Gareth", u"Greta",  u"Hamish", u"Imogen", u"Jasper",
    u"Joanna", u"Kamal",  u"Leonie",   u"Marcus", u"Mina",   u"Nadia",  u"Oscar",  u"Priya",
    u"Rory",   u"Sadie",  u"Theo",     u"Una",    u"Vikram", u"Wilma"};
constexpr const char16_t* kSurnames[] = {
    u"Abernethy", u"Ashdown",   u"Bellamy",   u"Birtwhistle", u"Calder",     u"Cartwright",
    u"Dalgleish", u"Drummond",  u"Ellsworth", u"Fairbairn",   u"Garside",    u"Hargreave",
    u"Harlow",    u"Inglis",    u"Jessop",    u"Kershaw",     u"Lomax",      u"Marchbank",
    u"Nuttall",   u"Oldroyd",   u"Pargeter",  u"Penhaligon",  u"Quarmby",    u"Ravenscroft",
    u"Sedgwick",  u"Thackeray", u"Underhill", u"Venables",    u"Wainwright", u"Yardley"};
constexpr const char16_t* kTrades[] = {
    u"Joinery",   u"Garden Supplies", u"Bakery",     u"Printing",      u"Motor Repairs",
    u"Textiles",  u"Ironmongers",     u"Veterinary", u"Opticians",     u"Roofing",
    u"Catering",  u"Upholstery",      u"Electrical", u"Boatyard",      u"Nurseries",
    u"Stonework", u"Bookbinders",     u"Heating",    u"Farm Services", u"Glazing"};
constexpr const char16_t* kEndings[] = {u"Ltd", u"& Sons", u"& Daughters", u"Partners", u"Group"};
constexpr const char16_t* kStreets[] = {
    u"Mill Lane",   u"Station Road", u"Orchard Street", u"Canal Wharf",  u"Church Walk",
    u"Weavers Row", u"Market Place", u"Foundry Yard",   u"Priory Close", u"Harbour Street",
    u"Beech Grove", u"Tollgate",     u"Fuller's Hill",  u"Saddler Court"};
constexpr const char16_t* kItems[] = {u"Oak shelving",
                                      u"Filing cabinet",
                                      u"Desk lamp",
                                      u"Envelopes, box of 500",
                                      u"Office chair",
                                      u"Label printer",
                                      u"Whiteboard",
                                      u"Paper, 80 g, pallet",
                                      u"Reception counter",
                                      u"Coat stand",
                                      u"Meeting table",
                                      u"Archive boxes",
                                      u"Blinds, made to measure",
                                      u"Carpet tiles",
                                      u"Water cooler",
                                      u"Parcel scales"};
constexpr const char16_t* kStates[] = {u"Shipped", u"Invoiced", u"Paid"};

struct Town {
    const char16_t* name;
    const char16_t* area; ///< first part of its postcodes
};
constexpr Town kTowns[] = {
    {u"Ashcombe", u"AQ1"},    {u"Brackenford", u"BQ4"}, {u"Calderbeck", u"CQ2"},
    {u"Dunmere", u"DQ7"},     {u"Eastwold", u"EQ3"},    {u"Fenwick Bay", u"FQ9"},
    {u"Granthorpe", u"GQ5"},  {u"Holmsea", u"HQ6"},     {u"Kirkstow", u"KQ8"},
    {u"Langmoor", u"LQ2"},    {u"Marlbridge", u"MQ1"},  {u"Netherby", u"NQ3"},
    {u"Oxley Green", u"OQ4"}, {u"Pendlestone", u"PQ6"}, {u"Ravensey", u"RQ7"},
    {u"Yarrowen", u"YQ1"}};

/// The letters of a name that may stand in a mail address.
QString mailPart(const QString& name) {
    QString part;
    for (const QChar c : name.toLower()) {
        if (c.isLetter()) {
            part += c;
        } else if (c == u' ' && !part.endsWith(u'-')) {
            part += u'-';
        }
    }
    return part;
}

} // namespace

DeskSampleData::DeskSampleData(qint64 customers, QDate today)
    : m_customers(customers), m_today(today), m_random(kSeed) {}

// The standard's distributions differ between libraries; the remainder of the generator's own
// numbers does not.
int DeskSampleData::below(int bound) {
    return static_cast<int>(m_random() % static_cast<unsigned>(bound));
}

template <class Table>
QString DeskSampleData::pick(const Table& table) {
    return QString::fromUtf16(table[static_cast<std::size_t>(below(int(std::size(table))))]);
}

QString DeskSampleData::businessName() {
    const QString surname = pick(kSurnames);
    const QString trade = pick(kTrades);
    switch (below(4)) {
    case 0:
        return surname + u' ' + trade + u' ' + pick(kEndings);
    case 1: {
        const QString partner = pick(kSurnames);
        if (partner == surname) {
            return surname + u' ' + trade;
        }
        return surname + u" & " + partner + u' ' + trade;
    }
    case 2:
        return QString::fromUtf16(kTowns[below(int(std::size(kTowns)))].name) + u' ' + trade;
    default:
        return surname + u' ' + trade;
    }
}

int DeskSampleData::orderCount() {
    return m_customers > kManyCustomers ? int(below(4) == 0) : below(7);
}

QDateTime DeskSampleData::workingTime(QDate day) {
    return {day, QTime(9, 0).addSecs(60 * 5 * below(96))};
}

SampleCustomer DeskSampleData::nextCustomer() {
    SampleCustomer customer;
    customer.number = QStringLiteral("C%1").arg(++m_customerNumber, m_customers > 999'999 ? 7 : 6,
                                                10, QLatin1Char('0'));
    customer.name = businessName();
    customer.contact = pick(kFirstNames) + u' ' + pick(kSurnames);
    customer.street = QString::number(1 + below(180)) + u' ' + pick(kStreets);
    const Town& town = kTowns[below(int(std::size(kTowns)))];
    customer.town = QString::fromUtf16(town.name);
    customer.postcode = QString::fromUtf16(town.area) + u' ' + QString::number(1 + below(9)) +
                        QChar(u'A' + below(26)) + QChar(u'A' + below(26));
    customer.phone = QStringLiteral("01632 960%1").arg(below(1000), 3, 10, QLatin1Char('0'));
    customer.email = mailPart(customer.contact).replace(u'-', u'.') + u'@' +
                     mailPart(customer.name) + u".example";
    m_since = m_today.addDays(-30 - below(5000));
    customer.since = workingTime(m_since);
    customer.orders = orderCount();
    return customer;
}

SampleOrder DeskSampleData::nextOrder() {
    SampleOrder order;
    order.number = QStringLiteral("A%1").arg(10000 + ++m_orderNumber);
    order.item = pick(kItems);
    order.quantity = 1 + below(12);
    order.amount = order.quantity * (950 + below(38000)) / 100.0;
    const QDate day = m_since.addDays(1 + below(int(m_since.daysTo(m_today)) - 1));
    order.date = workingTime(day);
    const bool recent = day.daysTo(m_today) < 45;
    order.state = recent ? QStringLiteral("Open") : pick(kStates);
    return order;
}

} // namespace yrw
