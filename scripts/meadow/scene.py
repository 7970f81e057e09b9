"""Writes a scene as Maya ASCII: meshes under transforms, shaders with or without a file texture."""

import hashlib
import math

HEADER = """//Maya ASCII 2018 scene
//Name: {name}
//Codeset: UTF-8
requires maya "2018";
currentUnit -l centimeter -a degree -t film;
fileInfo "application" "maya";
"""

CAMERAS = (("persp", "14 13 20", "-30 35 0", ""), ("top", "0 1000.1 0", "-90 0 0", "top"),
           ("front", "0 0 1000.1", "0 0 0", "front"), ("side", "1000.1 0 0", "0 90 0", "side"))

PLACEMENT = ("c:c", "tf:tf", "rf:rf", "mu:mu", "mv:mv", "s:s", "wu:wu", "wv:wv", "re:re", "of:of", "r:ro", "n:n",
             "vt1:vt1", "vt2:vt2", "vt3:vt3", "vc1:vc1", "o:uv", "ofs:fs")


def number(value):
    text = "%.6g" % (value if abs(value) > 1e-9 else 0.0)
    return text


def values(items):
    return " ".join(number(c) for item in items for c in item)


class Scene:
    def __init__(self, name):
        self.name = name
        self.lines = [HEADER.format(name=name).rstrip("\n")]
        self.connections, self.groups, self.textures = [], [], []
        for camera, translate, rotate, view in CAMERAS:
            self._camera(camera, translate, rotate, view)

    def _put(self, line):
        self.lines.append(line)

    def node(self, kind, name, parent=None, shared=False):
        below = ' -p "%s"' % parent if parent else ""
        self._put('createNode %s%s -n "%s"%s;' % (kind, " -s" if shared else "", name, below))
        digest = hashlib.md5((self.name + (parent or "") + "|" + name).encode()).hexdigest().upper()
        self._put('\trename -uid "%s-%s-%s-%s-%s";' % (digest[:8], digest[8:12], digest[12:16], digest[16:20], digest[20:]))

    def set(self, attribute, value, kind=None):
        self._put('\tsetAttr ".%s"%s %s;' % (attribute, ' -type "%s"' % kind if kind else "", value))

    def _camera(self, name, translate, rotate, view):
        self.node("transform", name, shared=True)
        self.set("v", "no")
        self.set("t", translate + " ", "double3")
        self.set("r", rotate + " ", "double3")
        self.node("camera", name + "Shape", name, shared=True)
        self._put('\tsetAttr -k off ".v" no;')
        self.set("imn", '"%s"' % name, "string")
        if view:
            self.set("o", "yes")

    def transform(self, name, parent=None, translate=None, rotate=None, scale=None, order=0):
        """`order` is the host's number of the order in which the axes are turned about: 0 xyz ... 5 zyx."""
        self.node("transform", name, parent)
        if order:
            self.set("ro", order)
        for attribute, value in (("t", translate), ("r", rotate), ("s", scale)):
            if value:
                self.set(attribute, values([value]) + " ", "double3")

    def mesh(self, name, parent, shape, group, goblin=None):
        self.node("mesh", name, parent)
        if goblin:
            self._put('\taddAttr -ci true -sn "goblinName" -ln "goblinName" -dt "string";')
        self._put('\tsetAttr -k off ".v";')
        self.set("vir", "yes")
        self.set("vif", "yes")
        self.set("uvst[0].uvsn", '"map1"', "string")
        self._chunks("uvst[0].uvsp", shape.uvs, 128, "float2")
        self.set("cuvs", '"map1"', "string")
        if shape.colours:
            self.set("dcol", "yes")
        self.set("dcc", '"Ambient+Diffuse"', "string")
        if shape.colours:
            self.set("ccls", '"colorSet1"', "string")
            self.set("clst[0].clsn", '"colorSet1"', "string")
            self._chunks("clst[0].clsp", shape.colours, 64)
        self._chunks("vt", shape.points, 166)
        edges, index = _edges(shape)
        self._chunks("ed", edges, 166)
        if shape.normals:
            self._chunks("n", shape.normals, 166, "float3")
        self._faces(shape, index)
        for attribute, title in (("cd", "Edge"), ("cvd", "Vertex"), ("pd[0]", "UV"), ("hfd", "Face")):
            self.set(attribute, "Index_Data %s 0 " % title, "dataPolyComponent")
        if goblin:
            self._put('\tsetAttr -k on ".goblinName" -type "string" "%s";' % goblin)
        self.connections.append('connectAttr "%s.iog" "%s.dsm" -na;' % (name, group))

    def _chunks(self, attribute, items, size, kind=None):
        for first in range(0, len(items), size):
            part = items[first:first + size]
            flag = "-s %d " % len(items) if first == 0 else ""
            rows = [values(part[i:i + 6]) for i in range(0, len(part), 6)]
            self._put('\tsetAttr %s".%s[%d:%d]"%s  %s;' % (flag, attribute, first, first + len(part) - 1,
                                                           ' -type "%s"' % kind if kind else "", "\n\t\t ".join(rows)))

    def _faces(self, shape, index):
        for first in range(0, len(shape.faces), 500):
            part = shape.faces[first:first + 500]
            flag = "-s %d " % len(shape.faces) if first == 0 else ""
            corners = sum(len(f) for f in part)
            text = "\n".join(_face(face, index, bool(shape.colours)) for face in part)
            self._put('\tsetAttr %s-ch %d ".fc[%d:%d]" -type "polyFaces" \n%s;'
                      % (flag, corners, first, first + len(part) - 1, text))

    def material(self, name, colour, texture=None):
        """A lambert shader with its shading group, which is the result; its colour comes from `texture`, a file name."""
        self.groups.append(name)
        self.node("lambert", name)
        self.set("dc", 1)
        if not texture:
            self.set("c", values([colour]) + " ", "float3")
        self.node("shadingEngine", name + "SG")
        self.set("ihi", 0)
        self.set("ro", "yes")
        self.node("materialInfo", name + "Info")
        self.connections += ['connectAttr "%s.oc" "%sSG.ss";' % (name, name), 'connectAttr "%sSG.msg" "%sInfo.sg";' % (name, name),
                             'connectAttr "%s.msg" "%sInfo.m";' % (name, name)]
        if texture:
            self._texture(name, texture)
        return name + "SG"

    def _texture(self, name, texture):
        self.textures.append(name)
        picture, place = name + "File", name + "Place"
        self.node("file", picture)
        self.set("ftn", '"%s"' % texture, "string")
        self.node("place2dTexture", place)
        for pair in PLACEMENT:
            self.connections.append('connectAttr "%s.%s" "%s.%s";' % (place, pair.split(":")[0], picture, pair.split(":")[1]))
        self.connections += ['connectAttr "%s.oc" "%s.c";' % (picture, name),
                             'connectAttr "%s.msg" "%sInfo.t" -na;' % (picture, name),
                             'connectAttr "%s.msg" ":defaultTextureList1.tx" -na;' % picture,
                             'connectAttr "%s.msg" ":defaultRenderUtilityList1.u" -na;' % place]

    def text(self):
        self._defaults()
        self.lines += self.connections
        for name in self.groups:
            self._put('connectAttr "%sSG.pa" ":renderPartition.st" -na;' % name)
            self._put('connectAttr "%s.msg" ":defaultShaderList1.s" -na;' % name)
        for group in [":initialShadingGroup", ":initialParticleSE"] + [name + "SG" for name in self.groups]:
            for link in ("link", "shadowLink"):
                self._put('relationship "%s" ":lightLinker1" "%s.message" ":defaultLightSet.message";' % (link, group))
        self._put('connectAttr "layerManager.dli[0]" "defaultLayer.id";')
        self._put('connectAttr "renderLayerManager.rlmi[0]" "defaultRenderLayer.rlid";')
        self._put('connectAttr "defaultRenderLayer.msg" ":defaultRenderingList1.r" -na;')
        self._put("// End of %s" % self.name)
        return "\n".join(self.lines) + "\n"

    def _defaults(self):
        links = len(self.groups) + 2
        self.node("lightLinker", "lightLinker1", shared=True)
        self._put('\tsetAttr -s %d ".lnk";' % links)
        self._put('\tsetAttr -s %d ".slnk";' % links)
        self.node("displayLayerManager", "layerManager")
        self.node("displayLayer", "defaultLayer")
        self.node("renderLayerManager", "renderLayerManager")
        self.node("renderLayer", "defaultRenderLayer")
        self.set("g", "yes")
        for node, attribute, count in (("renderPartition", "st", links), ("defaultShaderList1", "s", links + 2),
                                       ("defaultTextureList1", "tx", len(self.textures)),
                                       ("defaultRenderUtilityList1", "u", len(self.textures))):
            self._put("select -ne :%s;" % node)
            self._put('\tsetAttr -s %d ".%s";' % (count, attribute))
        for group in ("initialShadingGroup", "initialParticleSE"):
            self._put("select -ne :%s;" % group)
            self.set("ro", "yes")


def _edges(shape):
    """The edge list (from, to, 1 where smooth) and each edge's number by its ends."""
    index, sides = {}, []
    for f, face in enumerate(shape.faces):
        for (a, _), (b, _) in zip(face, face[1:] + face[:1]):
            if (b, a) in index:
                sides[index[(b, a)]].append(f)
            elif (a, b) not in index:
                index[(a, b)] = len(sides)
                sides.append([f])
            else:
                raise ValueError("edge %d-%d runs the same way in two faces" % (a, b))
    facing = [shape.face_normal(face) for face in shape.faces]
    limit = math.cos(math.radians(shape.crease)) if shape.crease else 2.0
    smooth = [len(s) == 1 or sum(p * q for p, q in zip(facing[s[0]], facing[s[1]])) >= limit for s in sides]
    return [(a, b, int(smooth[e])) for (a, b), e in sorted(index.items(), key=lambda item: item[1])], index


def _face(face, index, coloured):
    loop = []
    for (a, _), (b, _) in zip(face, face[1:] + face[:1]):
        loop.append(index[(a, b)] if (a, b) in index else -index[(b, a)] - 1)
    lines = ["\t\tf %d %s" % (len(face), " ".join(map(str, loop))),
             "\t\tmu 0 %d %s" % (len(face), " ".join(str(t) for _, t in face))]
    if coloured:
        lines.append("\t\tmc 0 %d %s" % (len(face), " ".join(str(v) for v, _ in face)))
    return "\n".join(lines)
