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

        Console.WriteLine(failed == 0 ? "C#: all well" : "C#: {0} failed", failed);
        return failed == 0 ? 0 : 1;
    }
}
