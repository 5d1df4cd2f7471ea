// A wall minus its windows, in C#.
// It looks at its own result: the volume that is left.
using System;
using Orva;

public static class Wall
{
    // The box between two corners: 12 triangles, counter-clockwise seen from outside.
    private static Mesh Box(double[] low, double[] high)
    {
        // Bits 0, 1 and 2 of a corner's number choose low or high in x, y and z.
        int[] corners = { 0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                          2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5 };
        var values = new double[corners.Length * Mesh.DoublesPerCorner];
        for (int i = 0; i < corners.Length; ++i)
            for (int axis = 0; axis < 3; ++axis)
                values[i * Mesh.DoublesPerCorner + axis] = (corners[i] >> axis & 1) == 0 ? low[axis] : high[axis];
        return Mesh.From(values);
    }

    private static double Volume(Mesh mesh)
    {
        double[] v = mesh.ToArray();
        double sum = 0;
        for (int a = 0; a < v.Length; a += 24)
        {
            int b = a + 8, c = a + 16;
            sum += v[a] * (v[b + 1] * v[c + 2] - v[b + 2] * v[c + 1]) + v[a + 1] * (v[b + 2] * v[c] - v[b] * v[c + 2]) +
                   v[a + 2] * (v[b] * v[c + 1] - v[b + 1] * v[c]);
        }
        return sum / 6;
    }

    public static int Main()
    {
        var windows = new Mesh[9];
        try
        {
            for (int i = 0; i < windows.Length; ++i)
                windows[i] = Box(new double[] { i + 0.7, -1, 1 }, new double[] { i + 1.3, 1, 2 });
            using (Mesh wall = Box(new double[] { 0, 0, 0 }, new double[] { 10, 0.3, 3 }))
            using (Mesh result = Solid.Subtract(wall, windows, Mode.InTurn))
            {
                Console.WriteLine("{0} triangles", result.Triangles);
                return Math.Abs(Volume(result) - (10 * 0.3 * 3 - 9 * 0.6 * 0.3)) < 1e-9 ? 0 : 1;
            }
        }
        finally
        {
            foreach (Mesh window in windows)
                if (window != null) window.Dispose();
        }
    }
}
