"""Fabrics in the simulator's input format: the output of `ibnetdiscover`."""

import collections

KINDS = {"S": ("Switch", "switchguid"), "H": ("Hca", "caguid"), "R": ("Rt", "rtguid")}


class Net:
    """Nodes by id; the id's first letter is the type (S, H or R), the rest the GUID in hex."""

    def __init__(self):
        self.nodes = {}
        self.links = collections.defaultdict(dict)

    def add(self, kind, guid, ports, description, device=0x5A50):
        node = f"{kind}-{guid:016x}"
        self.nodes[node] = (kind, guid, ports, description, device)
        return node

    def link(self, one, one_port, other, other_port):
        self.links[one][one_port] = (other, other_port)
        self.links[other][other_port] = (one, one_port)

    def text(self):
        lines = []
        for node, (kind, guid, ports, description, device) in self.nodes.items():
            word, guid_key = KINDS[kind]
            lines += ["vendid=0x5a1e0c", f"devid={device:#x}", f"sysimgguid={guid + 0x80:#x}",
                      f"{guid_key}={guid:#x}", f'{word} {ports} "{node}" # "{description}"']
            for port, (peer, peer_port) in sorted(self.links[node].items()):
                lines.append(f'[{port}] "{peer}"[{peer_port}]')
            lines.append("")
        return "\n".join(lines)


def two_switches(descriptions=("leaf", "spine")):
    """Two switches with two parallel links, an adapter on each, a router; ports that are down."""
    net = Net()
    leaf = net.add("S", 0x5A1E0C0000200000, 6, descriptions[0])
    spine = net.add("S", 0x5A1E0C0000200100, 4, descriptions[1])
    here = net.add("H", 0x5A1E0C0000100000, 2, "here HCA-1", 0x5A90)
    there = net.add("H", 0x5A1E0C0000100100, 2, "there HCA-1", 0x5A90)
    router = net.add("R", 0x5A1E0C0000300000, 2, "router", 0x5A52)
    net.link(leaf, 1, spine, 1)
    net.link(leaf, 2, spine, 2)
    net.link(leaf, 3, here, 1)
    net.link(leaf, 4, router, 1)
    net.link(spine, 3, there, 1)
    return net


def chain(switches):
    """An adapter and a chain of switches: port 2 of each is linked to port 1 of the next."""
    net = Net()
    here = net.add("H", 0x5A1E0C0000100000, 2, "here HCA-1", 0x5A90)
    row = [net.add("S", 0x5A1E0C0000200000 + 0x100 * i, 2, f"switch {i + 1}")
           for i in range(switches)]
    net.link(here, 1, row[0], 1)
    for one, other in zip(row, row[1:]):
        net.link(one, 2, other, 1)
    return net


LEAF, SPINE = "S-5a1e0c0000200000", "S-5a1e0c0000200100"
HERE, THERE, ROUTER = "H-5a1e0c0000100000", "H-5a1e0c0000100100", "R-5a1e0c0000300000"


def fat_tree(pods=20, leaves=16, spines=8, cores=20, adapters=2000):
    """Three levels: `pods` of leaf and spine switches, cores above, adapters on the leaves."""
    net = Net()
    at_core = collections.Counter()
    core = [net.add("S", 0x5A1E0C0030000000 + 0x100 * c, 36, f"core {c}") for c in range(cores)]
    made = 0
    for pod in range(pods):
        guid = 0x5A1E0C0040000000 + 0x100000 * pod
        leaf = [net.add("S", guid + 0x100 * n, 36, f"pod {pod} leaf {n}") for n in range(leaves)]
        spine = [net.add("S", guid + 0x80000 + 0x100 * n, 36, f"pod {pod} spine {n}")
                 for n in range(spines)]
        for s in range(spines):
            for n in range(leaves):
                net.link(leaf[n], 1 + s, spine[s], 1 + n)
            for up in range(4):
                c = (4 * s + up + 7 * pod) % cores
                at_core[c] += 1
                net.link(spine[s], 17 + up, core[c], at_core[c])
        for n in range(leaves):
            for slot in range(7):
                if made < adapters:
                    of_host = 0x5A1E0C0010000000 + 0x100 * made
                    adapter = net.add("H", of_host, 2, "host HCA-1", 0x5A90)
                    net.link(leaf[n], 20 + slot, adapter, 1)
                    made += 1
    return net
