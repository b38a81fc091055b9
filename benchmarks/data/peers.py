#!/usr/bin/python3
"""Makes the inputs of the data benchmarks, and reads them as the peers do.

usage: peers.py make|read csv|xlsx|xls FILE
Needs python3-openpyxl, python3-xlsxwriter, python3-xlwt and python3-xlrd. "read" prints the seconds of
processor time that it took to visit every cell.
"""
import csv
import sys
import time


def cells(row):
    return [row, "name %d" % (row % 977), row * 0.37, "Z%d" % (row * 7 % 1000), "true",
            "2024-01-%02d" % (row % 28 + 1), "x", 12345, "abcdefgh", "größe %d" % (row % 13)]


HEADER = ["id", "name", "price", "code", "flag", "date", "x", "number", "word", "size"]


def make_csv(name):
    with open(name, "w", newline="") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(HEADER)
        writer.writerows(cells(row) for row in range(1000000))


def make_xlsx(name):
    import xlsxwriter
    book = xlsxwriter.Workbook(name)
    sheet = book.add_worksheet("rows")
    sheet.write_row(0, 0, HEADER)
    for row in range(1, 100000):
        sheet.write_row(row, 0, cells(row))
    book.close()


def make_xls(name):
    import xlwt
    book = xlwt.Workbook()
    sheet = book.add_sheet("rows")
    for row in range(60000):
        for column, value in enumerate(cells(row) if row else HEADER):
            sheet.write(row, column, value)
    book.save(name)


def read_csv(name):
    with open(name, newline="") as file:
        return sum(len(row) for row in csv.reader(file))


def read_xlsx(name):
    import openpyxl
    book = openpyxl.load_workbook(name, read_only=True)
    return sum(len(row) for row in book.active.iter_rows(values_only=True))


def read_xls(name):
    import xlrd
    sheet = xlrd.open_workbook(name).sheet_by_index(0)
    return sum(len(sheet.row_values(row)) for row in range(sheet.nrows))


def main():
    action, kind, name = sys.argv[1:]
    function = globals()["%s_%s" % (action, kind)]
    if action == "read":
        for module in {"xlsx": ["openpyxl"], "xls": ["xlrd"]}.get(kind, []):
            __import__(module)
    start = time.process_time()
    function(name)
    if action == "read":
        print(time.process_time() - start)


if __name__ == "__main__":
    main()
