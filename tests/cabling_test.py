"""`fabscan check --expect`: the cabling of a fabric against a plan."""

import csv
import io
import json

import command_line
from command_line import DONE, EXAMPLES, FAILED, INCOMPLETE, WRONG_USAGE, CommandTest

DEMO = EXAMPLES / "demo.fabscan.jsonl"


class Cabling(CommandTest):
    def plan(self, change=None):
        """The links of the demo as a table, after `change(rows)`."""
        text = self.run_command("export", DEMO, "--format", "csv").stdout
        rows = list(csv.DictReader(io.StringIO(text)))
        columns = list(rows[0])
        if change: change({(row["name"], row["port"]): row for row in rows}, rows)
        out = io.StringIO()
        writer = csv.DictWriter(out, columns)
        writer.writeheader()
        writer.writerows(rows)
        return self.put("plan.csv", out.getvalue())

    def check(self, plan, *arguments):
        return self.run_command("check", DEMO, "--expect", plan, *arguments)

    def test_as_planned(self):
        for plan in (self.plan(), DEMO):
            run = self.check(plan)
            self.assertEqual((run.returncode, run.stdout), (DONE, "all links are as planned\n"))

    def test_differences(self):
        def change(at, rows):
            at["compute-001 HCA-1", "1"].update(remote_port="1")
            at["gateway-01", "1"].update(speed="NDR")
            rows.remove(at["leaf-01/U1", "2"])
            rows.append({"name": "new", "port": "3", "remote_name": "leaf-01/U1", "remote_port": "9"})

        plan = self.plan(change)
        run = self.check(plan)
        self.assertEqual(run.returncode, INCOMPLETE)
        self.assertEqual(run.stdout, """\
miswired: compute-001 HCA-1[1] is linked to leaf-01/U1[3], planned leaf-01/U1[1]
missing: leaf-01/U1[9] to new[3]
unexpected: leaf-01/U1[2] to spine-01/U1[1]
slow: gateway-01[1] to router-01[2] uses 4x HDR, planned 4x NDR

4 differences from the plan
""")
        result = json.loads(self.check(plan, "--json").stdout)
        self.assertEqual([link["is"] for link in result["links"]],
                         ["miswired", "missing", "unexpected"])
        self.assertEqual(result["links"][0]["planned"],
                         {"name": "leaf-01/U1", "guid": "0x5a1e0c0000000200", "port": 1})
        self.assertEqual((result["asPlanned"], len(result["slow"]), result["crossed"]),
                         (False, 1, []))

    def test_crossed_cables(self):
        def change(at, rows):
            one, other = at["compute-001 HCA-1", "1"], at["compute-002 HCA-1", "2"]
            for column in ("remote_name", "remote_guid", "remote_port"):
                one[column], other[column] = other[column], one[column]

        run = self.check(self.plan(change))
        self.assertEqual(run.returncode, INCOMPLETE)
        self.assertEqual(run.stdout, """\
miswired: compute-001 HCA-1[1] is linked to leaf-01/U1[3], planned leaf-02/U1[1]
miswired: compute-002 HCA-1[2] is linked to leaf-02/U1[1], planned leaf-01/U1[3]
crossed: exchange the cables in leaf-02/U1[1] and leaf-01/U1[3]

2 differences from the plan
""")

    def test_names_are_enough(self):
        def change(at, rows):
            for row in rows:
                for column in ("guid", "remote_guid"):
                    if row["remote_name"]: row[column] = ""

        self.assertEqual(self.check(self.plan(change)).returncode, DONE)

    def test_malformed_plans(self):
        head = "name,port,remote_name,remote_port\n"
        for text, problem in (
                ("", "line 0: the table is empty"),
                ("name,port\n", "line 1: the column 'remote_name' is missing"),
                (head + "a,x,b,1\n", 'line 2: "x" is not a port number; use 1 to 254'),
                (head + "a,1,b,0\n", 'line 2: "0" is not a port number'),
                (head + "a,1,,1\n", "line 2: a port has neither the name nor the GUID"),
                (head + "a,1,b,1\na,1,c,1\n", "line 3: one of the two ports has a link"),
                (head + "a,1,a,1\n", "the port is its own peer"),
                ("guid," + head + "zz,a,1,b,1\n", 'line 2: "zz" is not a GUID'),
                ("speed," + head + "fast,a,1,b,1\n", 'line 2: speed: "fast" is not known')):
            run = self.check(self.put("bad.csv", text))
            self.assertEqual((run.returncode, run.stdout), (FAILED, ""), text)
            self.assertIn(problem, run.stderr)
        self.assertEqual(self.check("none.csv").returncode, FAILED)
        self.assertEqual(self.check(DEMO, "--summary").returncode, WRONG_USAGE)


if __name__ == "__main__":
    command_line.main()
