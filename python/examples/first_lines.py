"""A newcomer's ten lines; README.md has the same."""
import gxshape as gx

plate = gx.Region([[0, 0], [40, 0], [40, 30], [0, 30]], holes=[[[25, 10], [35, 10], [35, 20], [25, 20]]])
print(plate, plate.area, plate.centre)
print(plate.inside([[30, 15], [5, 5]]))

bow = gx.Region([[0, 0], [0, 3], [6, 0], [6, 6]])
print(bow.check()[0].sentence)
print(bow.repaired().to_wkt())

shapes = gx.loads("POLYGON ((0 0, 4 0, 4 3))\nPOLYGON ((9 0, 12 0, 12 3, 9 3))")
table = gx.describe(shapes, only=["area", "centre", "circularity"], threads=2)
print(table["area"], gx.batch.nearest(shapes, [[6, 1]])["distance"])
