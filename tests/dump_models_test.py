"""`fabscan dump --one-per-model` from end to end."""

import json
import re
import signal
import subprocess
import time

import command_line
from command_line import (DONE, EXAMPLES, FAILED, INCOMPLETE, WRONG_USAGE, CommandTest, main,
                          snapshot, switch)
from models_test import host, node_info, spine

DEMO = EXAMPLES / "demo.fabscan.jsonl"


def of_device(number, device):
    return switch(f"s-{number:03}", hex(0x100 + number), attributes=node_info(DeviceID=device))


class OnePerModel(CommandTest):
    def dump(self, path, *arguments, **more):
        return self.run_command("dump", path, "--prefix", "MyDev", "--one-per-model", *arguments,
                                **more)

    def texts(self):
        return {name: (self.folder / name).read_text() for name in self.entries()
                if name.endswith(".cpp")}

    def test_a_file_for_each_model(self):
        path = self.put("f.jsonl", snapshot(
            host(1), spine(2), spine(1), host(2, specialNode="AN"),
            spine(3, inSubFabric=False)))
        run = self.dump(path.name)
        self.assertEqual(run.returncode, DONE)
        self.assertEqual(
            run.stdout,
            "file                          nodes  block  skipped  #error  edits  representative\n"
            "mydev_sw_d2f0_generated.cpp       2      1       14       7         "
            "0x0000000000001001  spine-00001\n"
            "mydev_hca_1021_generated.cpp      1      1       17       4         "
            "0x0000000000100001  host-00001\n"
            "mydev_an_1021_generated.cpp       1      1       19       2         "
            "0x0000000000100002  host-00002\n"
            "\n"
            "3 devices, representing 4 nodes\n"
            "skipped (outside the sub-fabric): 1 node\n")
        self.assertEqual(
            run.stderr,
            "fabscan: warning: 3 of 3 files do not compile as written: 13 functions with #error; "
            "next: fabscan scaffold f.jsonl --prefix MyDev --output-dir sim\n")
        self.assertEqual(self.entries(), [
            "f.jsonl", "mydev_an_1021_generated.cpp", "mydev_hca_1021_generated.cpp",
            "mydev_sw_d2f0_generated.cpp"])
        for name, errors in (("sw_d2f0", 7), ("hca_1021", 4), ("an_1021", 2)):
            text = self.texts()[f"mydev_{name}_generated.cpp"]
            self.assertEqual(sum("#error" in body for body in text.split("() {\n")[1:]), errors)
        self.assertIn("#include \"mydev_sw_d2f0.h\"\n",
                      self.texts()["mydev_sw_d2f0_generated.cpp"])

    def test_each_file_equals_the_output_of_the_listed_command(self):
        run = self.dump(DEMO)
        self.assertEqual(run.returncode, DONE)
        written = self.texts()
        models = json.loads(self.run_command("models", DEMO, "--json").stdout)["models"]
        self.assertEqual(len(models), len(written))
        for model in models:
            prefix = "MyDev_" + model["prefix"]
            alone = self.run_command("dump", DEMO, "--prefix", prefix, "--guid", model["guid"],
                                     "--force")
            name = alone.stdout.splitlines()[0]
            strip = lambda text: re.sub("0x0x[0-9a-f]+", "", text)
            self.assertEqual(strip((self.folder / name).read_text()), strip(written[name]))

    def test_no_class_is_defined_twice(self):
        self.dump(DEMO)
        prefixes = set()
        for name, text in self.texts().items():
            classes = set(re.findall(r"^void (\w+)::(\w+)::setNodeInfo\(\)", text, re.M))
            self.assertEqual(len(classes), 1, name)
            self.assertEqual(text.count("// Node Type: "), 1, name)
            prefixes.add(classes.pop()[0].lower())
        self.assertEqual(len(prefixes), 10)

    def test_many_models(self):
        path = self.put("f.jsonl", snapshot(*(of_device(i, 0x100 + i % 250) for i in range(750))))
        run = self.dump(path.name)
        self.assertEqual(run.returncode, DONE)
        self.assertEqual(run.stdout.splitlines()[-1],
                         "250 devices, representing 750 nodes")
        self.assertEqual(len(self.texts()), 250)
        self.assertEqual(len(self.entries()), 251)

    def test_models_with_the_same_device_id(self):
        """They differ only in the revision, which a prefix does not show."""
        nodes = [switch(f"s-{i}", hex(i + 1), attributes=node_info(DeviceID=7, revision=i))
                 for i in range(3)]
        path = self.put("f.jsonl", snapshot(*nodes))
        self.dump(path.name)
        self.assertEqual(sorted(self.texts()), [
            "mydev_sw_0007_2_generated.cpp", "mydev_sw_0007_3_generated.cpp",
            "mydev_sw_0007_generated.cpp"])

    def test_a_prefix_that_ends_in_an_underscore(self):
        path = self.put("f.jsonl", snapshot(host(1)))
        run = self.run_command("dump", path.name, "--prefix", "MyDev_", "--one-per-model")
        self.assertEqual(run.returncode, DONE)
        self.assertIn("void MyDev_HCA_1021::HCA::", self.texts()["mydev_hca_1021_generated.cpp"])

    def test_strict(self):
        path = self.put("f.jsonl", snapshot(host(1)))
        run = self.dump(path.name, "--strict")
        self.assertEqual(run.returncode, INCOMPLETE)
        self.assertEqual(
            run.stderr,
            "fabscan: error: 1 of 1 file does not compile as written: 4 functions with #error; "
            "next: fabscan scaffold f.jsonl --prefix MyDev --output-dir sim\n")
        self.assertEqual(len(self.texts()), 1)
        lines = [json.loads(line) for line in DEMO.read_text().splitlines()]
        whole = [line for line in lines if line.get("name") in ("leaf-01/U1", "compute-001 HCA-1")]
        run = self.run_command("dump", "-", "--prefix", "P", "--one-per-model", "--strict",
                               input=snapshot(*whole))
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))

    def test_an_earlier_file_is_kept_unless_forced(self):
        path = self.put("f.jsonl", snapshot(host(1), spine(1)))
        self.put("mydev_sw_d2f0_generated.cpp", "earlier\n")
        before = self.entries()
        self.assert_fails(self.dump(path.name),
                          "mydev_sw_d2f0_generated.cpp: exists; --force replaces it")
        self.assertEqual(self.entries(), before)
        self.assertEqual(self.texts(), {"mydev_sw_d2f0_generated.cpp": "earlier\n"})
        self.assertEqual(self.dump(path.name, "--force").returncode, DONE)
        self.assertEqual(len(self.texts()), 2)
        self.assertNotIn("earlier\n", self.texts().values())
        self.assertEqual(len(self.entries()), 3)

    def test_a_failed_run_leaves_nothing(self):
        path = self.put("f.jsonl", snapshot(host(1), spine(1)))
        before = self.entries()
        run = self.dump(path.name, file_limit=2000)
        self.assertEqual(run.returncode, FAILED)
        self.assertRegex(run.stderr, "^fabscan: error: .*_generated.cpp: cannot write .*: File too "
                                     "large; free some space, or write elsewhere\n$")
        self.assertEqual(self.entries(), before)

    def test_a_signal_leaves_nothing(self):
        path = self.put("f.jsonl", snapshot(*(of_device(i, 0x100 + i) for i in range(400))))
        self.put("mydev_sw_0100_generated.cpp", "earlier\n")
        before = self.entries()
        run = subprocess.Popen(
            [command_line._command, "dump", path.name, "--prefix", "MyDev", "--one-per-model",
             "--force"], cwd=self.folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        deadline = time.monotonic() + 60
        while (len(list(self.folder.glob(".fabscan-*"))) < 30 and run.poll() is None
               and time.monotonic() < deadline):
            pass
        run.send_signal(signal.SIGTERM)
        status = run.wait(60)
        self.assertIn(status, (-signal.SIGTERM, DONE))
        if status != DONE:  # it did not end before the signal
            self.assertEqual(self.entries(), before)
            self.assertEqual(self.texts(), {"mydev_sw_0100_generated.cpp": "earlier\n"})

    def test_models_of_selected_nodes(self):
        path = self.put("f.jsonl", snapshot(host(1), spine(1), spine(2), spine(3)))
        run = self.dump(path.name, "--guid", "0x1002", "--guid", "0x1003")
        self.assertEqual(run.returncode, DONE)
        self.assertEqual(run.stdout.splitlines()[-1], "1 device, representing 2 nodes")
        self.assertEqual(list(self.texts()), ["mydev_sw_d2f0_generated.cpp"])
        self.assertIn("'spine-00002'", self.texts()["mydev_sw_d2f0_generated.cpp"])

    def test_no_node(self):
        self.assert_fails(self.run_command("dump", "-", "--prefix", "P", "--one-per-model",
                                           input=snapshot()),
                          "standard input: no node to write: none is in the sub-fabric; use a "
                          "different snapshot")
        self.assertEqual(self.entries(), [])


if __name__ == "__main__":
    main()
