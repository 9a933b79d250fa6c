"""`fabscan scaffold SNAPSHOT` from end to end: the project builds, and its devices work."""

import json
import os
import subprocess

from command_line import DONE, EXAMPLES, FAILED, CommandTest, main, snapshot, switch
from models_test import host, spine

DEMO = EXAMPLES / "demo.fabscan.jsonl"
PARTIAL = EXAMPLES / "partial.fabscan.jsonl"


class Project(CommandTest):
    def scaffold(self, source, *arguments, **more):
        return self.run_command("scaffold", source, "--prefix", "MyDev", "--output-dir", "sim",
                                *arguments, **more)

    def build(self):
        """Configures and builds without any installed fabscan; returns what the devices print."""
        environment = {**os.environ, "CXXFLAGS": "-O0"}
        for words in (["cmake", "-S", "sim", "-B", "sim/build"],
                      ["cmake", "--build", "sim/build"]):
            done = subprocess.run(words, cwd=self.folder, env=environment, text=True, timeout=500,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            self.assertEqual(done.returncode, 0, done.stdout)
        return subprocess.run([self.folder / "sim/build/simulated_devices"], check=True, text=True,
                              stdout=subprocess.PIPE, timeout=60).stdout

    def printed(self, output):
        """Returns class name -> bytes of NodeInfo."""
        devices = {}
        for line in output.splitlines():
            if line.startswith("  "):
                devices[name] += bytes.fromhex(line)
            else:
                name = line
                devices[name] = b""
        return devices

    def test_every_model_of_the_examples_builds_and_answers(self):
        models = json.loads(self.run_command("models", DEMO, "--json").stdout)["models"]
        nodes = {node.get("guid"): node for node in map(json.loads, DEMO.read_text().splitlines())}
        run = self.scaffold(DEMO)
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        self.assertIn("\nEdited so that it compiles:\n", run.stdout)
        self.assertTrue(run.stdout.endswith(
            "  cmake -S sim -B sim/build && cmake --build sim/build\n  sim/build/simulated_devices\n"))
        devices = self.printed(self.build())
        self.assertEqual(len(devices), len(models))
        for model in models:
            name = next(name for name in devices if name.startswith(f"MyDev_{model['prefix']}::"))
            info = nodes[model["guid"]]["attributes"]["SMP_NodeInfo"]
            answer = devices[name]
            self.assertEqual(len(answer), 40)
            self.assertEqual(int.from_bytes(answer[30:32], "big"), info["DeviceID"])
            self.assertEqual(int.from_bytes(answer[37:40], "big"), info["VendorID"])

    def test_nodes_without_records_build(self):
        path = self.put("f.jsonl", snapshot(
            switch("bare"), spine(1), host(1), host(2, specialNode="AN"),
            {"name": "r", "guid": "0x9", "type": "RTR", "numPorts": 255}))
        run = self.scaffold(path)
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        self.assertEqual(len(self.printed(self.build())), 5)

    def test_the_layout(self):
        run = self.scaffold(PARTIAL, "--guid", "0x5a1e0c0000000100")
        self.assertEqual(run.returncode, DONE, run.stderr)
        self.assertEqual(self.entries("sim"),
                         ["CMakeLists.txt", "core", "devices", "include", "main.cpp"])
        (device,) = self.entries("sim/devices")
        self.assertEqual(self.entries(f"sim/devices/{device}"),
                         ["CMakeLists.txt", f"{device}.h", f"{device}_generated.cpp"])

    def test_selected_nodes_of_one_model_have_separate_prefixes(self):
        path = self.put("f.jsonl", snapshot(spine(1), spine(2), spine(3)))
        run = self.scaffold(path, "--guid", "0x1001", "--guid", "0x1003")
        self.assertEqual(run.returncode, DONE, run.stderr)
        self.assertEqual(self.entries("sim/devices"), ["mydev_sw_d2f0", "mydev_sw_d2f0_2"])
        self.assertIn("\n2 devices, representing 2 nodes\n", run.stdout)

    def test_exact_files_are_those_of_dump(self):
        path = self.put("f.jsonl", snapshot(host(1)))
        run = self.scaffold(path, "--exact")
        self.assertEqual(
            (run.returncode, run.stderr),
            (DONE, "fabscan: warning: 1 of 1 file does not compile as written: 4 functions with "
                   "#error; next: omit --exact\n"))
        exact = (self.folder / "sim/devices/mydev_hca_1021/mydev_hca_1021_generated.cpp").read_text()
        self.run_command("dump", path, "--prefix", "MyDev_HCA_1021")
        self.assertEqual(exact, (self.folder / "mydev_hca_1021_generated.cpp").read_text())

    def test_existing_files_are_kept_unless_forced(self):
        path = self.put("f.jsonl", snapshot(host(1)))
        (self.folder / "sim").mkdir()
        self.put("sim/main.cpp", "mine\n")
        self.assert_fails(self.scaffold(path), "sim/main.cpp: exists; --force replaces it")
        self.assertEqual(self.entries("sim"), ["main.cpp"])
        self.assertEqual((self.folder / "sim/main.cpp").read_text(), "mine\n")
        self.assertEqual(self.scaffold(path, "--force").returncode, DONE)
        self.assertIn("MyDev_HCA_1021", (self.folder / "sim/main.cpp").read_text())

    def test_a_failed_run_leaves_nothing(self):
        path = self.put("f.jsonl", snapshot(host(1)))
        run = self.scaffold(path, file_limit=2000)
        self.assertEqual(run.returncode, FAILED)
        self.assertEqual(run.stderr.count("\n"), 1)
        self.assertEqual(self.entries(), ["f.jsonl"])
        self.assert_fails(self.scaffold("missing"), "missing: cannot open: No such file or directory")
        run = self.scaffold("-", input=snapshot())
        self.assert_fails(run, "standard input: no node to simulate: none is in the sub-fabric; "
                               "use a different snapshot")
        self.assertEqual(self.entries(), ["f.jsonl"])

    def test_a_hostile_name_stays_in_its_comment(self):
        path = self.put("f.jsonl", snapshot(switch("x\n#error y\\")))
        self.assertEqual(self.scaffold(path).returncode, DONE)
        self.assertNotRegex((self.folder / "sim/main.cpp").read_text(), r"(?m)^#error|\\$")


if __name__ == "__main__":
    main()
