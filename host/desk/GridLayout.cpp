#include "host/desk/GridLayout.h"

namespace yrw {

namespace {

GridColumn column(const char16_t* field, const char16_t* header, int widthTwips,
                  bool editable = true) {
    return {QString::fromUtf16(field), QString::fromUtf16(header), widthTwips, true, editable};
}

GridColumn hiddenKey() {
    return {QStringLiteral("RecordID"), QStringLiteral("ID"), 900, false, false};
}

} // namespace

QList<GridLayout> customerLayouts() {
    const GridColumn number = column(u"CustomerNo", u"Number", 1350);
    const GridColumn name = column(u"Name", u"Name", 5100);
    const GridColumn contact = column(u"Contact", u"Contact", 3000);
    const GridColumn street = column(u"Street", u"Street", 2700);
    const GridColumn town = column(u"Town", u"Town", 1950);
    const GridColumn postcode = column(u"Postcode", u"Postcode", 1350);
    const GridColumn phone = column(u"Phone", u"Telephone", 1950);
    const GridColumn mail = column(u"EMail", u"E-mail", 4800);
    const GridColumn since = column(u"CustomerSince", u"Customer since", 2100);
    GridColumn key = hiddenKey();
    key.visible = true;
    return {
        {QStringLiteral("Overview"),
         {number, name, contact, town, phone, hiddenKey()},
         QStringLiteral("CustomerNo")},
        {QStringLiteral("Address book"),
         {number, name, street, postcode, town, mail, hiddenKey()},
         QStringLiteral("Name")},
        {QStringLiteral("All fields"),
         {key, number, name, contact, street, town, postcode, phone, mail, since},
         QStringLiteral("RecordID")},
    };
}

QList<GridLayout> orderLayouts() {
    const GridColumn number = column(u"OrderNo", u"Order", 1350);
    const GridColumn date = column(u"OrderDate", u"Date", 2100);
    const GridColumn item = column(u"Item", u"Item", 4800);
    const GridColumn quantity = column(u"Quantity", u"Quantity", 1200);
    GridColumn amount = column(u"Amount", u"Amount", 1350);
    amount.decimals = 2;
    const GridColumn state = column(u"State", u"State", 1350);
    const GridColumn customer = column(u"CustomerID", u"Customer ID", 1500);
    const GridColumn customerName = column(u"CustomerName", u"Customer", 3600, false);
    GridColumn shortItem = item;
    shortItem.widthTwips = 3300;
    return {
        {QStringLiteral("Orders of the customer"),
         {number, date, item, quantity, amount, state, customer, hiddenKey()},
         QStringLiteral("OrderNo")},
        {QStringLiteral("Short"), {number, item, state, hiddenKey()}, QStringLiteral("OrderNo")},
        {QStringLiteral("All orders"),
         {number, customer, customerName, date, shortItem, amount, state, hiddenKey()},
         QStringLiteral("OrderNo"),
         true},
    };
}

} // namespace yrw
