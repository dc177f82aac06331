# SPDX-License-Identifier: Apache-2.0
"""Ratios of what was measured, as a table, and compared with those that were kept."""

WORSE = 1.5  # A ratio may become so many times worse than the kept one before a run fails.


def ratio(first, second):
    return first / second if second else None


class Table:
    """Rows of figure, value, what it is measured against, ratio and target."""

    def __init__(self):
        self.part = None
        self.rows = []

    def add(self, name, value, against, target=None, unit="ms", more_is_better=False):
        """A ratio of the value and what it is measured against."""
        self.rows.append({"part": self.part, "name": name, "value": round(value, 3),
                          "against": round(against, 3), "unit": unit,
                          "ratio": round(ratio(value, against), 3),
                          "target": target, "more_is_better": more_is_better})

    def absolute(self, name, value, unit, target=None, more_is_better=False):
        """A figure that nothing else on the machine can be measured against."""
        self.rows.append({"part": self.part, "name": name, "value": round(value, 3),
                          "against": None, "unit": unit, "ratio": None, "target": target, "more_is_better": more_is_better})

    @staticmethod
    def meets(row):
        number = row["value"] if row["ratio"] is None else row["ratio"]
        return number >= row["target"] if row["more_is_better"] else number <= row["target"]

    def markdown(self):
        lines = ["| Figure | Value | Against | Ratio | Target | |", "|---|---|---|---|---|---|"]
        for row in self.rows:
            sign = "≥" if row["more_is_better"] else "≤"
            lines.append("| {} | {:g} {} | {} | {} | {} | {} |".format(
                row["name"], row["value"], row["unit"],
                "" if row["against"] is None else f"{row['against']:g} {row['unit']}",
                "" if row["ratio"] is None else f"{row['ratio']:.2f}",
                "" if row["target"] is None else f"{sign} {row['target']:g}",
                "" if row["target"] is None else "met" if self.meets(row) else "missed"))
        return "\n".join(lines)

    def add_parts(self, kept, order):
        """Takes the kept rows of parts that it has not measured, and those of "start" for the number
        of processors that it has not measured with."""
        def is_for_one(row):
            return "on one processor" in row["name"]
        names = {row["name"] for row in self.rows}
        measured = {row["part"]: False for row in self.rows}
        measured.update({row["part"]: True for row in self.rows if is_for_one(row)})
        self.rows += [row for row in kept if row["name"] not in names and
                      measured.get(row["part"]) != is_for_one(row)]
        self.rows.sort(key=lambda row: order.index(row["part"]))

    @staticmethod
    def change(row, old):
        """How many times worse a row's ratio is than another's; below 1 where it is better."""
        return ratio(old["ratio"], row["ratio"]) if row["more_is_better"] \
            else ratio(row["ratio"], old["ratio"])

    def worse_than(self, kept):
        """Rows whose ratios are much worse than those kept, each with the kept one."""
        before = {row["name"]: row for row in kept if row["ratio"]}
        pairs = [(row, before[row["name"]]) for row in self.rows
                 if row["ratio"] is not None and row["name"] in before]
        return [(row, old) for row, old in pairs if self.change(row, old) > WORSE]

    def take_better(self, other):
        """Takes the rows of parts that another table has as well, the better ones of both."""
        before = {row["name"]: row for row in self.rows if row["ratio"]}
        order = list(dict.fromkeys(row["part"] for row in self.rows))
        again = {row["part"] for row in other.rows}
        self.rows = [row for row in self.rows if row["part"] not in again]
        for row in other.rows:
            old = before.get(row["name"])
            self.rows.append(old if old and self.change(old, row) < 1 else row)
        self.rows.sort(key=lambda row: order.index(row["part"]))
