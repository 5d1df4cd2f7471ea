// The wrapper's results are the recorded ones, bit for bit; its handles are released once; what is wrong is said.
// Argument: tests/golden/cases.bin, the format of which stands beside it.
using System;
using System.Collections.Generic;
using System.Diagnostics;
using System.IO;
using System.Threading;
using Orva;

public static class Tests
{
    private static int failed;

    private static void Check(bool holds, string what)
    {
        if (holds) return;
        ++failed;
        Console.WriteLine("failed: " + what);
    }

    private static void Throws<Expected>(Action action, string what) where Expected : Exception
    {
        try
        {
            action();
        }
        catch (Expected)
        {
            return;
        }
        Check(false, what);
    }

    private struct Case
    {
        public int Operation;
        public double[][] Inputs;
        public double[] Result;
    }

    // One or two corners behind the last whole triangle are left out: an array here has none.
    private static double[] ReadMesh(BinaryReader reader)
    {
        int corners = reader.ReadInt32();
        var values = new double[(corners - corners % 3) * 8];
        for (int i = 0; i < corners * 8; ++i)
        {
            double value = reader.ReadDouble();
            if (i < values.Length) values[i] = value;
        }
        return values;
    }

    private static List<Case> ReadCases(string path)
    {
        var cases = new List<Case>();
        using (var reader = new BinaryReader(File.OpenRead(path)))
        {
            Check(new string(reader.ReadChars(8)) == "ORVAGLD1", "the file of golden results");
            for (int count = reader.ReadInt32(); count > 0; --count)
            {
                var one = new Case { Operation = reader.ReadInt32(), Inputs = new double[reader.ReadInt32()][] };
                for (int i = 0; i < one.Inputs.Length; ++i) one.Inputs[i] = ReadMesh(reader);
                one.Result = ReadMesh(reader);
                cases.Add(one);
            }
        }
        return cases;
    }

    private static double[] Compute(Case one)
    {
        Mesh[] meshes = Array.ConvertAll(one.Inputs, Mesh.From);
        var cutters = new Mesh[meshes.Length - 1];
        Array.Copy(meshes, 1, cutters, 0, cutters.Length);
        Mesh result = one.Operation == 0 ? Solid.Union(meshes[0], meshes[1])
            : one.Operation == 1 ? Solid.Subtract(meshes[0], meshes[1])
            : one.Operation == 2 ? Solid.Intersect(meshes[0], meshes[1])
            : Solid.Subtract(meshes[0], cutters, one.Operation == 3 ? Mode.InTurn : Mode.Union);
        using (result)
        {
            foreach (Mesh mesh in meshes) mesh.Dispose();
            return result.ToArray();
        }
    }

    private static bool SameBits(double[] a, double[] b)
    {
        if (a.Length != b.Length) return false;
        for (int i = 0; i < a.Length; ++i)
        {
            bool same = BitConverter.DoubleToInt64Bits(a[i]) == BitConverter.DoubleToInt64Bits(b[i]);
            if (!same && !(double.IsNaN(a[i]) && double.IsNaN(b[i]))) return false;
        }
        return true;
    }

    // The box between two corners, with shared vertices.
    private static IndexedMesh Box(double low, double high)
    {
        int[] faces = { 0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                        2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5 };
        var vertices = new double[24];
        for (int i = 0; i < 24; ++i) vertices[i] = (i / 3 >> i % 3 & 1) == 0 ? low : high;
        return IndexedMesh.From(vertices, faces);
    }

    private static Mesh SoupOf(IndexedMesh mesh)
    {
        double[] vertices = mesh.Vertices();
        int[] faces = mesh.Faces();
        var values = new double[faces.Length * Mesh.DoublesPerCorner];
        for (int i = 0; i < faces.Length; ++i) Array.Copy(vertices, 3 * faces[i], values, i * Mesh.DoublesPerCorner, 3);
        return Mesh.From(values);
    }

    // Each directed edge once, and once in the opposite direction.
    private static bool IsClosed(int[] faces)
    {
        var edges = new HashSet<long>();
        for (int i = 0; i < faces.Length; ++i)
            if (!edges.Add((long)faces[i] << 32 | (uint)faces[i % 3 == 2 ? i - 2 : i + 1])) return false;
        foreach (long edge in edges)
            if (!edges.Contains(edge << 32 | edge >> 32)) return false;
        return true;
    }

    private static void CheckTidied(IndexedMesh result, int faces, string what)
    {
        using (result)
        {
            Check(result.Report.Closed && result.Report.OpenEdges == 0 && IsClosed(result.Faces()), what + " is closed");
            Check(result.FaceCount == faces, what + " has as few faces as it needs, not " + result.FaceCount);
            Check(result.Vertices().Length == 3 * result.VertexCount && result.Faces().Length == 3 * faces, what + " is whole");
            Check(result.Corners().Length == 15 * faces && result.Origins().Length == 2 * faces, what + " has its corners");
        }
    }

    private static void TidiedResults()
    {
        using (IndexedMesh a = Box(0, 2))
        using (IndexedMesh b = Box(1, 3))
        using (Mesh soupA = SoupOf(a))
        using (Mesh soupB = SoupOf(b))
        {
            var all = new TidyOptions { Merge = Merge.All };
            CheckTidied(Tidy.Union(new[] { a, b }, null), 36, "a union");
            CheckTidied(Tidy.Union(new[] { soupA, soupB }, all), 36, "a union of soups");
            CheckTidied(Tidy.Intersect(new[] { a, b }, all), 12, "an intersection");
            CheckTidied(Tidy.Intersect(new[] { soupA, soupB }, null), 12, "an intersection of soups");
            CheckTidied(Tidy.Subtract(a, new[] { b }, Mode.InTurn, null), 24, "a difference");
            CheckTidied(Tidy.Subtract(soupA, new[] { soupB, soupB }, Mode.Union, null), 24, "a difference of soups");
            CheckTidied(Tidy.Subtract(a, new IndexedMesh[0], Mode.InTurn, null), 12, "a base without cutters");
            using (Mesh soup = Solid.Subtract(soupA, soupB)) CheckTidied(Tidy.Soup(soup, null), 24, "a soup");

            // A result is an operand like any other.
            using (IndexedMesh part = Tidy.Subtract(a, new[] { b }, Mode.InTurn, null))
                CheckTidied(Tidy.Union(new[] { part, b }, all), 36, "what was cut off and put back");

            double[] open = soupA.ToArray();
            Array.Resize(ref open, open.Length - 24);
            using (Mesh soup = Mesh.From(open))
            using (IndexedMesh result = Tidy.Soup(soup, null))
                Check(!result.Report.Closed && result.Report.OpenEdges == 3 && result.FaceCount == 11, "what is open is said");

            IndexedMesh gone = Box(0, 1);
            gone.Dispose();
            gone.Dispose();
            Throws<ObjectDisposedException>(() => gone.Faces(), "a released solid is not read");
            Throws<ObjectDisposedException>(() => Tidy.Union(new[] { a, gone }, null), "nor given to the library");
            Throws<ArgumentNullException>(() => Tidy.Union((IndexedMesh[])null, null), "no solids");
            Throws<ArgumentNullException>(() => Tidy.Subtract(a, new IndexedMesh[1], Mode.InTurn, null), "a solid that is null");
            Throws<ArgumentNullException>(() => Tidy.Subtract(a, null, Mode.InTurn, null), "no list of cutters");
            Throws<ArgumentException>(() => Tidy.Soup(soupA, new TidyOptions { Tolerance = -1 }), "a negative tolerance");
            Throws<ArgumentException>(() => IndexedMesh.From(new double[4], new int[3]), "a part of a vertex");
            Throws<ArgumentException>(() => IndexedMesh.From(new double[3], new int[4]), "a part of a face");
            foreach (int index in new[] { -1, 1 })
                using (IndexedMesh wrong = IndexedMesh.From(new double[3], new[] { 0, 0, index }))
                    Throws<ArgumentException>(() => Tidy.Union(new[] { wrong }, null), "a vertex that is not there");
        }
    }

    public static int Main(string[] arguments)
    {
        List<Case> cases = ReadCases(arguments[0]);
        Check(cases.Count == 344, "344 golden results");
        for (int i = 0; i < cases.Count; ++i) Check(SameBits(Compute(cases[i]), cases[i].Result), "golden result " + i);

        // From several threads at once.
        int right = 0;
        var threads = new Thread[4];
        for (int t = 0; t < threads.Length; ++t)
        {
            threads[t] = new Thread(() =>
            {
                bool all = true;
                for (int i = 0; i < 50; ++i) all &= SameBits(Compute(cases[i]), cases[i].Result);
                if (all) Interlocked.Increment(ref right);
            });
            threads[t].Start();
        }
        foreach (Thread thread in threads) thread.Join();
        Check(right == threads.Length, "the same results in every thread");

        // Handles.
        Mesh mesh = Mesh.From(new double[24]);
        Mesh empty = Mesh.Empty();
        Check(mesh.Triangles == 1 && empty.Triangles == 0 && empty.ToArray().Length == 0, "triangles are counted");
        mesh.Dispose();
        mesh.Dispose();
        Check(mesh.IsClosed, "disposed of twice, released once");
        Throws<ObjectDisposedException>(() => mesh.ToArray(), "a released mesh is not read");
        Throws<ObjectDisposedException>(() => Solid.Union(mesh, empty), "nor given to the library");
        Throws<ObjectDisposedException>(() => Solid.Subtract(empty, new[] { empty, mesh }, Mode.Union), "nor as a cutter");
        empty.Dispose();
        Check(empty.IsClosed, "a cutter is given back where another one fails");
        long before = Process.GetCurrentProcess().WorkingSet64;
        for (int i = 0; i < 2000; ++i) Mesh.From(new double[24 * 1000]); // nobody disposes of these: 384 MB in all
        GC.Collect();
        GC.WaitForPendingFinalizers();
        Check(Process.GetCurrentProcess().WorkingSet64 - before < 128 << 20, "what nobody disposes of is released");

        Throws<ArgumentException>(() => Mesh.From(new double[25]), "a part of a triangle");
        Throws<ArgumentNullException>(() => Mesh.From(null), "no values");
        Throws<ArgumentNullException>(() => Solid.Union(null, null), "no operands");
        Throws<ArgumentException>(() => Solid.Subtract(Mesh.Empty(), new Mesh[0], Mode.InTurn), "no cutters");
        Throws<ArgumentNullException>(() => Solid.Subtract(Mesh.Empty(), new Mesh[1], Mode.InTurn), "a cutter that is null");

        TidiedResults();

        Console.WriteLine(failed == 0 ? "C#: all well" : "C#: {0} failed", failed);
        return failed == 0 ? 0 : 1;
    }
}
