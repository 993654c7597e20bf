#!/usr/bin/env python3
"""Writes the sample database: a small wholesale business with customers around the world.

Usage: make_sample_db.py OUTPUT

The content is fixed by a seeded generator, so every build writes the same rows.

Schema (declared types as written; row counts in brackets):

  Regions [7]
      RegionID INTEGER PRIMARY KEY, RegionName TEXT
  Customers [40]
      CustomerID INTEGER PRIMARY KEY, CompanyName TEXT, ContactName TEXT, City TEXT,
      Country TEXT, RegionID INTEGER -> Regions, CustomerSince DATE, Notes MEMO (often NULL)
  Products [36]
      ProductID INTEGER PRIMARY KEY, ProductName TEXT, Category TEXT, QuantityPerUnit TEXT,
      UnitPrice MONEY, UnitWeight REAL (kg), Discontinued BOOLEAN (0/1)
  Orders [577]
      OrderID INTEGER PRIMARY KEY, CustomerID INTEGER -> Customers, OrderDate DATE,
      ShippedDate DATE (NULL while not shipped), ShipVia TEXT, Freight CURRENCY
  "Order Details" [2000]
      OrderID INTEGER -> Orders, LineNo SMALLINT, ProductID INTEGER -> Products,
      Quantity INTEGER, UnitPrice MONEY, Discount REAL (0 to 0.2)

  View "Order Details Extended": one row per order line, in order and line order:
      OrderID, OrderDate, Customer, Country, Product, Category, Quantity, UnitPrice, Discount,
      ExtendedPrice (Quantity * UnitPrice * (1 - Discount), rounded to cents)
  View "Sales by Region": one row per order, by region, country, customer and order:
      Region, Country, Customer, OrderID, OrderDate, OrderYear (integer), Sales (order total)

Dates are ISO text (YYYY-MM-DD) from 2023-01-02 to 2024-12-31. Money is held to the cent.
"""

import datetime
import os
import random
import sqlite3
import sys

SEED = 1975
ORDER_LINES = 2000
FIRST_ORDER_DAY = datetime.date(2023, 1, 2)
LAST_ORDER_DAY = datetime.date(2024, 12, 31)

REGIONS = [
    "North America",
    "South America",
    "Western Europe",
    "Northern Europe",
    "Southern Europe",
    "Eastern Europe",
    "Asia Pacific",
]

# CompanyName, ContactName, City, Country, Region
CUSTOMERS = [
    ("Alpine Provisions", "Heidi Gruber", "Innsbruck", "Austria", "Western Europe"),
    ("Müller & Söhne GmbH", "Jürgen Müller", "München", "Germany", "Western Europe"),
    ("Café Lumière", "Zoë Lefèvre", "Paris", "France", "Western Europe"),
    ("De Gouden Kaas", "Pieter de Vries", "Utrecht", "Netherlands", "Western Europe"),
    ("Brasserie du Parc", "Amélie Dubois", "Bruxelles", "Belgium", "Western Europe"),
    ("Zürcher Feinkost AG", "Urs Brändli", "Zürich", "Switzerland", "Western Europe"),
    ("Kaffehuset Åkerlund", "Åsa Åkerlund", "Göteborg", "Sweden", "Northern Europe"),
    ("Gårdsbutikken Ørsted", "Øystein Ørsted", "Bergen", "Norway", "Northern Europe"),
    ("Nordic Pantry Oy", "Aino Virtanen", "Tampere", "Finland", "Northern Europe"),
    ("Copenhagen Deli", "Mads Sørensen", "København", "Denmark", "Northern Europe"),
    ("Harbour Street Grocers", "Fiona MacLeod", "Edinburgh", "United Kingdom", "Northern Europe"),
    ("The Corner Larder", "Oliver Bennett", "Bristol", "United Kingdom", "Northern Europe"),
    ("Ελληνικά Τρόφιμα Α.Ε.", "Σοφία Παπαδοπούλου", "Αθήνα", "Greece", "Southern Europe"),
    ("Pâtisserie São João", "João Conceição", "Porto", "Portugal", "Southern Europe"),
    ("Salumeria Bianchi", "Giulia Bianchi", "Bologna", "Italy", "Southern Europe"),
    ("Ultramarinos Peña", "José Peña", "Sevilla", "Spain", "Southern Europe"),
    ("Trattoria da Nino", "Nino Esposito", "Napoli", "Italy", "Southern Europe"),
    ("Łódzkie Delikatesy", "Łukasz Wiśniewski", "Łódź", "Poland", "Eastern Europe"),
    ("Балкан Трейд ООД", "Иван Петров", "София", "Bulgaria", "Eastern Europe"),
    ("Pražská Tržnice", "Tomáš Dvořák", "Praha", "Czechia", "Eastern Europe"),
    ("Budai Csemege Kft.", "Zsófia Kovács", "Budapest", "Hungary", "Eastern Europe"),
    ("Delicatese Carpați", "Ștefan Popescu", "Cluj-Napoca", "Romania", "Eastern Europe"),
    ("Great Lakes Foods", "Karen Olson", "Milwaukee", "USA", "North America"),
    ("Lone Star Market", "Travis Hill", "Austin", "USA", "North America"),
    ("Pacific Crest Grocers", "Megan Lee", "Portland", "USA", "North America"),
    ("Bay Area Provisions", "Daniel Ortiz", "Oakland", "USA", "North America"),
    ("Maple Leaf Fine Foods", "Chloé Tremblay", "Montréal", "Canada", "North America"),
    ("Prairie Pantry", "Liam Walker", "Calgary", "Canada", "North America"),
    ("Mercado del Sol", "Lucía Hernández", "Guadalajara", "Mexico", "North America"),
    ("Ñandú Importaciones", "Martín Gómez", "Buenos Aires", "Argentina", "South America"),
    ("Empório Paulista", "Ana Luísa Souza", "São Paulo", "Brazil", "South America"),
    ("Andes Gourmet", "Valentina Rojas", "Santiago", "Chile", "South America"),
    ("Café de Bogotá", "Andrés Martínez", "Bogotá", "Colombia", "South America"),
    ("Lima Selecta", "Rosa Quispe", "Lima", "Peru", "South America"),
    ("山田商事株式会社", "山田太郎", "東京", "Japan", "Asia Pacific"),
    ("Harbourside Traders", "Chloe Nguyen", "Sydney", "Australia", "Asia Pacific"),
    ("Kiwi Fresh Ltd", "Aroha Ngata", "Wellington", "New Zealand", "Asia Pacific"),
    ("Lion City Provisions", "Tan Wei Ming", "Singapore", "Singapore", "Asia Pacific"),
    ("Seoul Table", "Kim Min-jun", "Seoul", "South Korea", "Asia Pacific"),
    ("Orchard Road Deli", "Priya Raman", "Singapore", "Singapore", "Asia Pacific"),
]

NOTES = [
    "Deliveries before 10:00 only.",
    "Pays by bank transfer; send invoices by e-mail.",
    "Prefers a call before any substitution.\nLoading bay at the back of the building.",
    "Seasonal customer: most orders from October to December.",
]

# ProductName, Category, QuantityPerUnit, list price, unit weight in kg
PRODUCTS = [
    ("Darjeeling First Flush", "Beverages", "20 x 100 g tins", 18.00, 2.4),
    ("Assam Breakfast Tea", "Beverages", "10 x 250 g bags", 12.50, 2.7),
    ("Colombian Coffee Beans", "Beverages", "6 x 1 kg bags", 46.00, 6.2),
    ("Sparkling Elderflower", "Beverages", "12 x 750 ml bottles", 21.60, 10.8),
    ("Blood Orange Juice", "Beverages", "12 x 1 l cartons", 19.20, 12.6),
    ("Hot Chocolate Flakes", "Beverages", "12 x 300 g boxes", 27.00, 3.9),
    ("Aged Gouda", "Dairy", "1 x 4.5 kg wheel", 62.25, 4.6),
    ("Alpine Gruyère", "Dairy", "2 x 2 kg blocks", 71.40, 4.1),
    ("Buffalo Mozzarella", "Dairy", "24 x 125 g balls", 38.40, 3.2),
    ("Greek Feta", "Dairy", "4 x 1 kg tubs", 29.90, 4.3),
    ("Cultured Butter", "Dairy", "20 x 250 g blocks", 44.00, 5.1),
    ("Stone-Ground Spelt Flour", "Grains", "10 x 1 kg bags", 16.50, 10.2),
    ("Arborio Rice", "Grains", "12 x 1 kg bags", 22.80, 12.3),
    ("Bronze-Cut Linguine", "Grains", "24 x 500 g packs", 31.20, 12.4),
    ("Rolled Oats", "Grains", "8 x 1 kg bags", 11.60, 8.2),
    ("Rye Crispbread", "Grains", "12 x 250 g packs", 17.40, 3.2),
    ("Smoked Salmon", "Seafood", "10 x 200 g packs", 54.00, 2.2),
    ("Marinated Anchovies", "Seafood", "12 x 100 g jars", 26.40, 2.0),
    ("Pickled Herring", "Seafood", "12 x 400 g jars", 30.00, 6.1),
    ("Tuna in Olive Oil", "Seafood", "24 x 160 g tins", 43.20, 4.3),
    ("Prosciutto di Parma", "Meat", "1 x 7 kg ham", 118.00, 7.1),
    ("Chorizo Sarta", "Meat", "10 x 250 g rings", 32.50, 2.6),
    ("Duck Rillettes", "Meat", "12 x 180 g jars", 39.60, 2.6),
    ("Bresaola", "Meat", "6 x 500 g pieces", 57.00, 3.1),
    ("Wildflower Honey", "Condiments", "12 x 340 g jars", 33.00, 4.9),
    ("Dijon Mustard", "Condiments", "12 x 200 g jars", 14.40, 2.9),
    ("Aged Balsamic Vinegar", "Condiments", "6 x 250 ml bottles", 48.00, 2.4),
    ("Extra Virgin Olive Oil", "Condiments", "6 x 1 l tins", 52.80, 6.3),
    ("Sea Salt Flakes", "Condiments", "12 x 250 g boxes", 21.00, 3.2),
    ("Harissa Paste", "Condiments", "12 x 190 g jars", 18.60, 2.7),
    ("Dark Chocolate 70%", "Confections", "20 x 100 g bars", 30.00, 2.1),
    ("Almond Nougat", "Confections", "12 x 200 g bars", 34.80, 2.5),
    ("Butter Shortbread", "Confections", "12 x 300 g tins", 36.00, 4.8),
    ("Salted Caramels", "Confections", "24 x 150 g bags", 40.80, 3.7),
    ("Candied Orange Peel", "Confections", "10 x 250 g tubs", 27.50, 2.6),
    ("Marzipan Loaf", "Confections", "12 x 200 g loaves", 25.20, 2.5),
]
DISCONTINUED = {"Hot Chocolate Flakes", "Rye Crispbread", "Harissa Paste"}

SHIPPERS = ["Speedy Express", "United Package", "Federal Shipping"]
QUANTITIES = [1, 2, 3, 5, 6, 10, 12, 20, 24, 40]
DISCOUNTS = [0.0, 0.0, 0.0, 0.0, 0.05, 0.05, 0.1, 0.15, 0.2]

SCHEMA = """
CREATE TABLE Regions (
    RegionID INTEGER PRIMARY KEY,
    RegionName TEXT NOT NULL
);
CREATE TABLE Customers (
    CustomerID INTEGER PRIMARY KEY,
    CompanyName TEXT NOT NULL,
    ContactName TEXT,
    City TEXT,
    Country TEXT,
    RegionID INTEGER REFERENCES Regions (RegionID),
    CustomerSince DATE,
    Notes MEMO
);
CREATE TABLE Products (
    ProductID INTEGER PRIMARY KEY,
    ProductName TEXT NOT NULL,
    Category TEXT,
    QuantityPerUnit TEXT,
    UnitPrice MONEY NOT NULL,
    UnitWeight REAL,
    Discontinued BOOLEAN NOT NULL
);
CREATE TABLE Orders (
    OrderID INTEGER PRIMARY KEY,
    CustomerID INTEGER NOT NULL REFERENCES Customers (CustomerID),
    OrderDate DATE NOT NULL,
    ShippedDate DATE,
    ShipVia TEXT,
    Freight CURRENCY NOT NULL
);
CREATE TABLE "Order Details" (
    OrderID INTEGER NOT NULL REFERENCES Orders (OrderID),
    LineNo SMALLINT NOT NULL,
    ProductID INTEGER NOT NULL REFERENCES Products (ProductID),
    Quantity INTEGER NOT NULL,
    UnitPrice MONEY NOT NULL,
    Discount REAL NOT NULL,
    PRIMARY KEY (OrderID, LineNo)
);
CREATE INDEX OrdersByCustomer ON Orders (CustomerID);
CREATE INDEX OrderDetailsByProduct ON "Order Details" (ProductID);

CREATE VIEW "Order Details Extended" AS
SELECT d.OrderID, o.OrderDate, c.CompanyName AS Customer, c.Country,
       p.ProductName AS Product, p.Category, d.Quantity, d.UnitPrice, d.Discount,
       ROUND(d.Quantity * d.UnitPrice * (1 - d.Discount), 2) AS ExtendedPrice
FROM "Order Details" AS d
JOIN Orders AS o ON o.OrderID = d.OrderID
JOIN Customers AS c ON c.CustomerID = o.CustomerID
JOIN Products AS p ON p.ProductID = d.ProductID
ORDER BY d.OrderID, d.LineNo;

CREATE VIEW "Sales by Region" AS
SELECT r.RegionName AS Region, c.Country, c.CompanyName AS Customer, o.OrderID, o.OrderDate,
       CAST(strftime('%Y', o.OrderDate) AS INTEGER) AS OrderYear,
       ROUND(SUM(d.Quantity * d.UnitPrice * (1 - d.Discount)), 2) AS Sales
FROM Orders AS o
JOIN Customers AS c ON c.CustomerID = o.CustomerID
JOIN Regions AS r ON r.RegionID = c.RegionID
JOIN "Order Details" AS d ON d.OrderID = o.OrderID
GROUP BY o.OrderID
ORDER BY r.RegionName, c.Country, c.CompanyName, o.OrderID;
"""


def cents(value):
    return round(value + 1e-9, 2)


def regions():
    return [(i + 1, name) for i, name in enumerate(REGIONS)]


def customers(rng):
    rows = []
    for i, (company, contact, city, country, region) in enumerate(CUSTOMERS):
        since = datetime.date(2015, 1, 1) + datetime.timedelta(days=rng.randrange(2900))
        note = rng.choice(NOTES) if rng.random() < 0.3 else None
        rows.append((i + 1, company, contact, city, country, REGIONS.index(region) + 1,
                     since.isoformat(), note))
    return rows


def products():
    return [(i + 1, name, category, unit, price, weight, int(name in DISCONTINUED))
            for i, (name, category, unit, price, weight) in enumerate(PRODUCTS)]


def orders_and_lines(rng):
    """Orders spread evenly over the two years, with 1 to 6 lines each, until the order lines
    reach ORDER_LINES exactly. The last orders of the period are not shipped yet."""
    line_counts = []
    while sum(line_counts) < ORDER_LINES:
        line_counts.append(min(rng.randint(1, 6), ORDER_LINES - sum(line_counts)))
    span = (LAST_ORDER_DAY - FIRST_ORDER_DAY).days
    orders, lines = [], []
    for index, count in enumerate(line_counts):
        order_id = 10001 + index
        ordered = FIRST_ORDER_DAY + datetime.timedelta(days=span * index // (len(line_counts) - 1))
        shipped = ordered + datetime.timedelta(days=rng.randint(1, 12))
        orders.append((order_id, rng.randrange(len(CUSTOMERS)) + 1, ordered.isoformat(),
                       shipped.isoformat() if shipped <= LAST_ORDER_DAY else None,
                       rng.choice(SHIPPERS), cents(rng.uniform(2.5, 140.0))))
        for line_no, product in enumerate(rng.sample(range(len(PRODUCTS)), count), start=1):
            # Prices rose by 4% at the start of 2024.
            price = PRODUCTS[product][3] * (1.04 if ordered.year == 2024 else 1.0)
            lines.append((order_id, line_no, product + 1, rng.choice(QUANTITIES), cents(price),
                          rng.choice(DISCOUNTS)))
    return orders, lines


def write(path):
    rng = random.Random(SEED)
    connection = sqlite3.connect(path)
    with connection:
        connection.executescript(SCHEMA)
        connection.executemany("INSERT INTO Regions VALUES (?, ?)", regions())
        connection.executemany("INSERT INTO Customers VALUES (?, ?, ?, ?, ?, ?, ?, ?)",
                               customers(rng))
        connection.executemany("INSERT INTO Products VALUES (?, ?, ?, ?, ?, ?, ?)", products())
        orders, lines = orders_and_lines(rng)
        connection.executemany("INSERT INTO Orders VALUES (?, ?, ?, ?, ?, ?)", orders)
        connection.executemany('INSERT INTO "Order Details" VALUES (?, ?, ?, ?, ?, ?)', lines)
    connection.execute("VACUUM")
    connection.close()


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: make_sample_db.py OUTPUT")
    output = sys.argv[1]
    os.makedirs(os.path.dirname(os.path.abspath(output)), exist_ok=True)
    # Written beside the target and moved into place, so that a failed run leaves no half
    # database behind for the build to take as finished.
    partial = output + ".partial"
    if os.path.exists(partial):
        os.remove(partial)
    write(partial)
    os.replace(partial, output)


if __name__ == "__main__":
    main()
