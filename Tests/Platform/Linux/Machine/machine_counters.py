"""The counters as read by Corvella, beside what other programs say at the same moment."""

import json
import os
import subprocess
import sys
import tempfile
import unittest

import psutil

WRAP = 2**32
MIB = 2**20
PROGRAM = os.path.abspath(sys.argv.pop(1))


def run(command, **options):
    """The output of a command; fails when the command does."""
    return subprocess.run(
        command, check=True, stdout=subprocess.PIPE, text=True, timeout=30, **options
    ).stdout


def works(command):
    return subprocess.run(command, capture_output=True, timeout=30).returncode == 0


def alone(flag, trial):
    """The start of a command that runs in a namespace of its own; None where trial fails there."""
    as_other = ["unshare", "--map-root-user", flag]
    ways = [["unshare", flag], as_other] if os.getuid() == 0 else [as_other]
    return next((way for way in ways if works([*way, *trial.split()])), None)


class Counters:
    """The program under test, asked again and again."""

    def __init__(self, prefix=()):
        self.process = subprocess.Popen(
            [*prefix, PROGRAM, "--again"],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
            bufsize=1,
        )
        self.first = json.loads(self.process.stdout.readline())

    def read(self):
        self.process.stdin.write("\n")
        return json.loads(self.process.stdout.readline())

    def stop(self):
        self.process.stdin.close()
        self.process.stdout.close()
        self.process.wait(10)


def links(prefix=()):
    """What ip says of links that are up and no loopback: bytes in and out by name and index."""
    found = {}
    for link in json.loads(run([*prefix, "ip", "-s", "-j", "link"])):
        if "UP" in link["flags"] and "LOOPBACK" not in link["flags"]:
            bytes_of = link["stats64"]
            key = f"{link['ifname']}#{link['ifindex']}"
            found[key] = bytes_of["rx"]["bytes"], bytes_of["tx"]["bytes"]
    return found


class ThisMachine(unittest.TestCase):
    def setUp(self):
        self.counters = Counters()
        self.addCleanup(self.counters.stop)

    def processor_times(self):
        """As psutil reads them, in ticks: user, nice, system, idle."""
        second = os.sysconf("SC_CLK_TCK")
        times = psutil.cpu_times()
        system = times.system + times.irq + times.softirq + times.steal
        idle = times.idle + times.iowait
        return [round(time * second) for time in (times.user, times.nice, system, idle)]

    def test_the_processors_time_lies_between_two_readings_of_psutil(self):
        before = self.processor_times()
        ticks = self.counters.read()["processor"]
        after = self.processor_times()
        for name, low, high in zip(("user", "nice", "system", "idle"), before, after):
            # Idle time may step back by some ticks; another reading ran meanwhile.
            slack = 20 if name == "idle" else 0
            self.assertGreaterEqual(ticks[name], low % WRAP - slack, name)
            self.assertLessEqual(ticks[name], high % WRAP + slack, name)

    def test_the_load_is_the_one_that_top_tells(self):
        busy = subprocess.Popen([sys.executable, "-c", "while True: pass"])
        self.addCleanup(busy.wait)
        self.addCleanup(busy.kill)
        before = self.counters.read()["processor"]
        as_shipped = {"LC_ALL": "C", "HOME": "/nonexistent", "XDG_CONFIG_HOME": "/nonexistent"}
        told = run(["top", "-b", "-n", "2", "-d", "2"], env={**os.environ, **as_shipped})
        after = self.counters.read()["processor"]
        line = [each for each in told.splitlines() if each.startswith("%Cpu")][-1]
        percent = {part.split()[1]: float(part.split()[0]) for part in line[8:].split(",")}
        spans = {name: (after[name] - before[name]) % WRAP for name in after}
        idle = 100 * spans["idle"] / sum(spans.values())
        # top starts to look a little later, and starting it is work, too.
        self.assertAlmostEqual(idle, percent["id"] + percent["wa"], delta=15)

    def test_memory_is_what_psutil_and_free_tell(self):
        if os.path.exists("/proc/spl/kstat/zfs/arcstats"):
            self.skipTest("ZFS holds spare memory here that others count as used: not compared.")
        before = psutil.virtual_memory()
        memory = self.counters.read()["memory"]
        after = psutil.virtual_memory()
        columns, figures = (line.split() for line in run(["free", "-b"]).splitlines()[:2])
        free = dict(zip(columns, map(int, figures[1:])))
        self.assertEqual(memory["physical"], before.total)
        self.assertEqual(memory["physical"], free["total"])
        available = memory["physical"] - memory["used"]
        others = before.available, after.available, free["available"]
        slack = 64 * MIB  # Programs come and go between the readings.
        self.assertGreaterEqual(available, min(others) - slack)
        self.assertLessEqual(available, max(others) + slack)

    def test_the_volume_is_the_one_that_df_tells(self):
        volume = self.counters.read()["volume"]
        told = run(["df", "-B1", "--output=size,avail", "/"]).splitlines()[1]
        total, available = map(int, told.split())
        self.assertEqual(volume["total"], total)
        self.assertAlmostEqual(volume["available"], available, delta=64 * MIB)

    def test_every_interface_has_the_bytes_that_ip_tells(self):
        before = links()
        network = self.counters.read()["network"]
        after = links()
        self.assertEqual(set(network), set(before))
        for key, counted in network.items():
            for at, name in enumerate(("received", "sent")):
                self.assertLessEqual(
                    (counted[name] - before[key][at]) % WRAP, after[key][at] - before[key][at]
                )


class NetworkOfItsOwn:
    """A network namespace in which nothing happens but what a test does."""

    def __init__(self, prefix):
        # It lives as long as its first process, which ends with its input.
        self.holder = subprocess.Popen(
            [*prefix, "sh", "-c", "echo up; exec cat"],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
        )
        self.holder.stdout.readline()
        pid = self.holder.pid
        self.prefix = ["nsenter", "--target", str(pid), "--net"]
        if {"--map-root-user", "--user"} & set(prefix):
            self.prefix += ["--user", "--preserve-credentials"]

    def stop(self):
        self.holder.communicate(timeout=10)

    def ip(self, *lines):
        run([*self.prefix, "ip", "-batch", "-"], input="\n".join(lines) + "\n")


LISTEN = """
import socket, sys
server = socket.create_server(("10.9.8.2", 7000))
print("ready", flush=True)
client, _ = server.accept()
while client.recv(1 << 16):
    pass
client.sendall(bytes(10_000_000))
client.close()
"""
CALL = """
import socket
line = socket.create_connection(("10.9.8.2", 7000), 10)
line.sendall(bytes(10_000_000))
line.shutdown(socket.SHUT_WR)
size = 0
while got := line.recv(1 << 16):
    size += len(got)
print(size)
"""


class Networks(unittest.TestCase):
    def setUp(self):
        prefix = alone("--net", "ip link set lo up")
        if not prefix:
            self.skipTest("No network namespaces here: interfaces were not made and taken away.")
        self.near = NetworkOfItsOwn(prefix)
        self.addCleanup(self.near.stop)
        pair = "ip link add name try0 type veth peer name try1"
        if not works([*self.near.prefix, *pair.split()]):
            self.skipTest("No virtual interfaces here: none were made and taken away.")
        self.near.ip("link del try0")
        self.counters = Counters(self.near.prefix)
        self.addCleanup(self.counters.stop)

    def pair(self):
        """An interface near0 that leads to far0 in another namespace."""
        far = NetworkOfItsOwn([*self.near.prefix, "unshare", "--net"])
        self.addCleanup(far.stop)
        self.near.ip(
            "link add name near0 type veth peer name far0",
            f"link set far0 netns {far.holder.pid}",
            "link set near0 addrgenmode none",
            "link set near0 up",
            "address add 10.9.8.1/24 dev near0",
        )
        far.ip(
            "link set far0 addrgenmode none",
            "link set far0 up",
            "address add 10.9.8.2/24 dev far0",
        )
        return far

    def counted(self):
        """Bytes in and out of near0 by the program under test and by ip, when nothing moves."""
        for _ in range(100):
            before = links(self.near.prefix)
            network = self.counters.read()["network"]
            if before == links(self.near.prefix):
                ((ours, counts),) = network.items()
                self.assertEqual(list(before), [ours])
                return (counts["received"], counts["sent"]), before[ours]
        raise AssertionError("something always moves")

    def test_ten_megabytes_each_way_are_counted_to_the_byte(self):
        far = self.pair()
        ours_before, ip_before = self.counted()
        listener = subprocess.Popen(
            [*far.prefix, sys.executable, "-c", LISTEN], stdout=subprocess.PIPE
        )
        self.addCleanup(listener.stdout.close)
        self.addCleanup(listener.wait)
        self.addCleanup(listener.kill)
        listener.stdout.readline()
        self.assertEqual(int(run([*self.near.prefix, sys.executable, "-c", CALL])), 10_000_000)
        ours_after, ip_after = self.counted()
        for way in range(2):
            moved = (ours_after[way] - ours_before[way]) % WRAP
            self.assertEqual(moved, ip_after[way] - ip_before[way])
            self.assertGreaterEqual(moved, 10_000_000)
            self.assertLess(moved, 12_000_000)

    def test_an_interface_made_again_under_its_name_is_a_new_one(self):
        keys = []
        for _ in range(2):
            self.near.ip("link add name near0 type veth peer name far0", "link set near0 up")
            keys += self.counters.read()["network"]
            self.near.ip("link del near0")
            self.assertEqual(self.counters.read()["network"], {})
        self.assertEqual([key.split("#")[0] for key in keys], ["near0", "near0"])
        self.assertNotEqual(*keys)

    def test_interfaces_that_are_down_do_not_count(self):
        self.near.ip("link add name near0 type veth peer name far0")
        self.assertEqual(self.counters.read()["network"], {})

    def test_the_loopback_does_not_count(self):
        self.near.ip("link set lo up")
        self.assertEqual(self.counters.read()["network"], {})

    def test_three_hundred_interfaces_are_all_counted(self):
        for at in range(150):
            self.near.ip(
                f"link add name near{at} type veth peer name far{at}",
                f"link set near{at} up",
                f"link set far{at} up",
            )
        told = links(self.near.prefix)
        self.assertEqual(len(told), 300)
        self.assertEqual(set(self.counters.read()["network"]), set(told))

    def test_counters_are_right_while_interfaces_come_and_go(self):
        self.near.ip("link add name near0 type veth peer name far0", "link set near0 up")
        (key,) = self.counters.read()["network"]
        coming = "link add name other0 type veth peer name other1\nlink del other0\n"
        churn = subprocess.Popen(
            [*self.near.prefix, "ip", "-batch", "-"], stdin=subprocess.PIPE, text=True
        )
        self.addCleanup(churn.wait)
        self.addCleanup(churn.stdin.close)
        networks = []
        for _ in range(100):
            churn.stdin.write(coming)
            churn.stdin.flush()
            networks.append(self.counters.read()["network"])
        # None is an honest answer to two interruptions in a row, but not every time.
        told = [network for network in networks if network is not None]
        self.assertGreater(len(told), 50)
        for network in told:
            self.assertIn(key, network)


class Mounts(unittest.TestCase):
    """The files of /proc, and the start-up volume, replaced by others."""

    def setUp(self):
        self.prefix = alone("--mount", "mount --bind /dev/null /proc/stat")
        if not self.prefix:
            self.skipTest("No mount namespaces here: /proc and / were not replaced.")
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def file(self, content):
        path = os.path.join(self.folder, "figures")
        with open(path, "wb") as file:
            file.write(content)
        return path

    def reading(self, script, start='exec "$PROGRAM"'):
        """One reading after a shell script that may mount; $FOLDER is there to be used."""
        environment = {**os.environ, "PROGRAM": PROGRAM, "FOLDER": self.folder}
        return json.loads(
            run([*self.prefix, "sh", "-ec", script + "\n" + start], env=environment)
        )

    def assert_none(self, reading, *names):
        self.assertEqual({name for name in reading if reading[name] is None}, set(names))

    def test_without_anything_mounted_all_is_there(self):
        self.assert_none(self.reading(""))

    def test_empty_files_say_nothing(self):
        reading = self.reading("mount --bind /dev/null /proc/stat")
        self.assert_none(reading, "processor")
        reading = self.reading("mount --bind /dev/null /proc/meminfo")
        self.assert_none(reading, "memory")

    def test_junk_says_nothing(self):
        for junk in (b"junk\n", bytes(MIB), b"cpu" * MIB, b"MemTotal:" * MIB):
            path = self.file(junk)
            reading = self.reading(
                f"mount --bind {path} /proc/stat; mount --bind {path} /proc/meminfo"
            )
            self.assert_none(reading, "processor", "memory")

    def test_a_pipe_keeps_nobody_waiting(self):
        reading = self.reading('mkfifo "$FOLDER/pipe"; mount --bind "$FOLDER/pipe" /proc/stat')
        self.assert_none(reading, "processor")

    def test_files_that_may_not_be_read_say_nothing(self):
        powerless = ["setpriv", "--bounding-set=-all", "--inh-caps=-all"]
        if not works([*self.prefix, *powerless, "true"]):
            self.skipTest("Privileges cannot be given up here: no file was unreadable.")
        path = self.file(b"cpu 1 2 3 4\n")
        os.chmod(path, 0)
        reading = self.reading(
            f"mount --bind {path} /proc/stat",
            f'exec {" ".join(powerless)} "$PROGRAM"',
        )
        self.assert_none(reading, "processor")

    def test_figures_of_another_file_are_told(self):
        path = self.file(b"cpu 1 2 3 4 5 6 7 8 9 10\n")
        reading = self.reading(f"mount --bind {path} /proc/stat")
        self.assertEqual(reading["processor"], {"user": 1, "nice": 2, "system": 24, "idle": 9})

    def test_without_proc_the_volume_and_the_network_are_still_there(self):
        # What little of it the sanitizers need stays.
        reading = self.reading(
            'mkdir "$FOLDER/proc"; mount --rbind /proc "$FOLDER/proc"; mount -t tmpfs tmpfs /proc;'
            ' ln -s "$FOLDER/proc/self" "$FOLDER/proc/$$" /proc'
        )
        self.assert_none(reading, "processor", "memory")

    def test_the_start_up_volume_is_the_one_at_the_root(self):
        reading = self.reading(
            """
            mount -t tmpfs -o size=64m tmpfs "$FOLDER"
            for each in /*; do
                if [ -L "$each" ]; then cp -P "$each" "$FOLDER$each"
                elif [ -d "$each" ]; then mkdir "$FOLDER$each"; mount --rbind "$each" "$FOLDER$each"
                fi
            done
            head -c 16M /dev/zero >"$FOLDER/filling"
            """,
            'exec chroot "$FOLDER" "$PROGRAM"',
        )
        self.assertEqual(reading["volume"]["total"], 64 * MIB)
        self.assertAlmostEqual(reading["volume"]["available"], 48 * MIB, delta=MIB // 16)


if __name__ == "__main__":
    unittest.main(verbosity=2)
