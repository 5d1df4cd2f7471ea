// The C interfaces from C#: P/Invoke for the functions, SafeHandles for the records, so that each is released exactly once.
//
// note: out of memory is a C++ exception in the operations of Solid. On Linux a runtime cannot catch it, and the process ends; a
// host that has to survive that calls through a C++ function of its own that catches. Microsoft's runtime on Windows makes it an
// SEHException. Those of Tidy, and what they call, throw an OutOfMemoryException on both.
using System;
using System.Runtime.InteropServices;

namespace Orva
{
    /// A mesh of the library's: doubles, eight to a corner (position, normal, aux), three corners to a triangle, its outside where
    /// they run counter-clockwise. Released when disposed of, or else by the garbage collector. One thread's at a time.
    public sealed class Mesh : SafeHandle
    {
        public const int DoublesPerCorner = 8;

        // Called by the runtime as well, for what orva_meshd_create returns.
        private Mesh() : base(IntPtr.Zero, true) { }

        public static Mesh Empty() { return Native.orva_meshd_create(0); }

        /// A mesh of its own with these values.
        public static Mesh From(double[] values)
        {
            if (values == null) throw new ArgumentNullException("values");
            if (values.Length % (3 * DoublesPerCorner) != 0)
                throw new ArgumentException("24 doubles make a triangle; there is a part of one too many", "values");
            Mesh mesh = Native.orva_meshd_create(values.Length / DoublesPerCorner);
            if (values.Length > 0) Marshal.Copy(values, 0, Record(mesh).Vertices, values.Length);
            return mesh;
        }

        public int Triangles
        {
            get { return Held.By(this, Record).Count / 3; }
        }

        /// A copy of its values.
        public double[] ToArray()
        {
            return Held.By(this, mesh =>
            {
                MeshD record = Record(mesh);
                var values = new double[checked(record.Count * DoublesPerCorner)];
                if (values.Length > 0) Marshal.Copy(record.Vertices, values, 0, values.Length);
                return values;
            });
        }

        public override bool IsInvalid { get { return handle == IntPtr.Zero; } }

        protected override bool ReleaseHandle()
        {
            Native.orva_meshd_destroy(handle);
            return true;
        }

        internal static MeshD Record(SafeHandle mesh)
        {
            return (MeshD)Marshal.PtrToStructure(mesh.DangerousGetHandle(), typeof(MeshD));
        }
    }

    public enum Mode
    {
        InTurn,
        Union
        // note: not the parallel union, which never returns where the task scheduler has no thread besides the caller's.
    }

    /// The operations; each gives a new mesh and leaves its operands as they are. An empty operand empties every result.
    public static class Solid
    {
        public static Mesh Union(Mesh a, Mesh b) { return Combine(Native.orva_bspcsg_union_mesh, a, b); }
        public static Mesh Subtract(Mesh a, Mesh b) { return Combine(Native.orva_bspcsg_subtract_mesh, a, b); }
        public static Mesh Intersect(Mesh a, Mesh b) { return Combine(Native.orva_bspcsg_intersect_mesh, a, b); }

        /// What lies in `from` but in none of the cutters, of which there is at least one.
        public static Mesh Subtract(Mesh from, Mesh[] cutters, Mode mode)
        {
            if (from == null) throw new ArgumentNullException("from");
            if (cutters == null) throw new ArgumentNullException("cutters");
            if (cutters.Length == 0) throw new ArgumentException("none: nothing is cut then", "cutters");
            return Held.By(cutters, records =>
            {
                Mesh output = Mesh.Empty();
                if (mode == Mode.InTurn)
                    Native.orva_bspcsg_subtract_multi_mesh(output, from, records, records.Length);
                else
                    Native.orva_bspcsg_subtract_multi_union_mesh(output, from, records, records.Length);
                return output;
            }, Mesh.Record);
        }

        private delegate void Operation(Mesh output, Mesh a, Mesh b);

        private static Mesh Combine(Operation operation, Mesh a, Mesh b)
        {
            if (a == null) throw new ArgumentNullException("a");
            if (b == null) throw new ArgumentNullException("b");
            Mesh output = Mesh.Empty();
            operation(output, a, b);
            return output;
        }
    }

    /// A mesh with shared vertices, and what tidying found where that is what made it. Released when disposed of, or else by the
    /// garbage collector. One thread's at a time.
    public sealed class IndexedMesh : SafeHandle
    {
        public const int DoublesPerCorner = 5; // normal, aux

        // Arrays of this class's own, where the values came from the host; a result's are the library's.
        private IntPtr ownVertices;
        private IntPtr ownFaces;

        internal IndexedMesh() : base(IntPtr.Zero, true)
        {
            SetHandle(Marshal.AllocHGlobal(Marshal.SizeOf(typeof(SolidRecord))));
            Marshal.StructureToPtr(new SolidRecord(), handle, false);
        }

        /// A mesh of its own: three doubles to a vertex; three indices to a face, counter-clockwise seen from outside.
        public static IndexedMesh From(double[] vertices, int[] faces)
        {
            if (vertices == null) throw new ArgumentNullException("vertices");
            if (faces == null) throw new ArgumentNullException("faces");
            if (vertices.Length % 3 != 0) throw new ArgumentException("three doubles make a vertex", "vertices");
            if (faces.Length % 3 != 0) throw new ArgumentException("three indices make a face", "faces");
            var mesh = new IndexedMesh();
            mesh.ownVertices = Marshal.AllocHGlobal(new IntPtr(8L * vertices.Length));
            mesh.ownFaces = Marshal.AllocHGlobal(new IntPtr(4L * faces.Length));
            Marshal.Copy(vertices, 0, mesh.ownVertices, vertices.Length);
            Marshal.Copy(faces, 0, mesh.ownFaces, faces.Length);
            var record = new SolidRecord
            {
                VertexCount = vertices.Length / 3, FaceCount = faces.Length / 3,
                Vertices = mesh.ownVertices, Faces = mesh.ownFaces
            };
            Marshal.StructureToPtr(record, mesh.handle, false);
            return mesh;
        }

        /// What was found and done where a function of Tidy made this mesh.
        public TidyReport Report { get; internal set; }

        public int VertexCount { get { return Held.By(this, Record).VertexCount; } }
        public int FaceCount { get { return Held.By(this, Record).FaceCount; } }

        /// Copies of its values: three doubles to a vertex;
        public double[] Vertices() { return Held.By(this, mesh => Doubles(Record(mesh).Vertices, 3L * Record(mesh).VertexCount)); }

        /// three indices to a face;
        public int[] Faces() { return Held.By(this, mesh => Integers(Record(mesh).Faces, 3L * Record(mesh).FaceCount)); }

        /// five doubles to each corner of a face, or nothing;
        public double[] Corners()
        {
            return Held.By(this, mesh => Doubles(Record(mesh).Corners, 3L * DoublesPerCorner * Record(mesh).FaceCount));
        }

        /// and to each face the place of its mesh among the operands and of its triangle in that, both -1 where that could not be
        /// told; or nothing.
        public int[] Origins() { return Held.By(this, mesh => Integers(Record(mesh).Origins, 2L * Record(mesh).FaceCount)); }

        public override bool IsInvalid { get { return handle == IntPtr.Zero; } }

        protected override bool ReleaseHandle()
        {
            if (ownVertices == IntPtr.Zero && ownFaces == IntPtr.Zero) Native.orva_tidy_free(handle);
            Marshal.FreeHGlobal(ownVertices);
            Marshal.FreeHGlobal(ownFaces);
            Marshal.FreeHGlobal(handle);
            return true;
        }

        internal static SolidRecord Record(SafeHandle mesh)
        {
            return (SolidRecord)Marshal.PtrToStructure(mesh.DangerousGetHandle(), typeof(SolidRecord));
        }

        private static double[] Doubles(IntPtr from, long count)
        {
            var values = new double[from == IntPtr.Zero ? 0 : count];
            if (values.Length > 0) Marshal.Copy(from, values, 0, values.Length);
            return values;
        }

        private static int[] Integers(IntPtr from, long count)
        {
            var values = new int[from == IntPtr.Zero ? 0 : count];
            if (values.Length > 0) Marshal.Copy(from, values, 0, values.Length);
            return values;
        }
    }

    /// Which coplanar neighbours become one face: only pieces of one face, faces that were cut, or all.
    public enum Merge
    {
        None,
        Cut,
        All
    }

    /// Lengths in the unit of the coordinates.
    public sealed class TidyOptions
    {
        public double Tolerance;   // how far apart things may be that should be one; 0 for a default that suits the size
        public double GapWidth;    // up to which width gaps are closed that are wider than that
        public Merge Merge = Merge.Cut;
        public bool Scale = true;  // computes in a unit that suits the meshes' size
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct TidyReport
    {
        private readonly int closed;
        private readonly int padding;
        public readonly ulong OpenEdges;      // edges of faces without a match
        public readonly double LargestGap;    // from an open edge to the next
        public readonly ulong LoopsRemoved;   // open loops in the plane of one face
        public readonly double LoopArea;
        public readonly double MovedByWeld;   // the most that a vertex was moved onto another,
        public readonly double MovedByZip;    // that an edge was bent to pass through a vertex,
        public readonly double MovedByDrop;   // that a dropped vertex was off the edge that is there now
        public readonly ulong ForcedEars;     // triangles made without regard to their shape
        public readonly ulong FacesLeft;      // faces of operands whose pieces were left as they were
        public readonly ulong SoupTriangles;  // what came in to be tidied
        public readonly ulong Pieces;         // groups of faces that hang together
        public readonly double Scale;         // what coordinates were multiplied by to compute

        /// Every edge belongs to two faces.
        public bool Closed { get { return closed != 0; } }
    }

    /// The operations with results that are closed by index and have few triangles. Each gives a new mesh, with its report, and
    /// leaves its operands as they are. An empty operand empties every result. Options may be null.
    public static class Tidy
    {
        /// The soup, tidied.
        public static IndexedMesh Soup(Mesh soup, TidyOptions options)
        {
            var native = new NativeOptions(options);
            return Call(new[] { soup }, Mesh.Record, (output, meshes) =>
            {
                TidyReport report;
                int status = Native.orva_tidy_soup(output, out report, ref meshes[0], IntPtr.Zero, ref native);
                output.Report = report;
                return status;
            });
        }

        /// What lies in any of the meshes.
        public static IndexedMesh Union(IndexedMesh[] meshes, TidyOptions options)
        {
            return Of(meshes, Native.orva_tidy_union_solids, options);
        }
        public static IndexedMesh Union(Mesh[] meshes, TidyOptions options) { return Of(meshes, Native.orva_tidy_union, options); }

        /// What lies in all of the meshes.
        public static IndexedMesh Intersect(IndexedMesh[] meshes, TidyOptions options)
        {
            return Of(meshes, Native.orva_tidy_intersect_solids, options);
        }
        public static IndexedMesh Intersect(Mesh[] meshes, TidyOptions options)
        {
            return Of(meshes, Native.orva_tidy_intersect, options);
        }

        /// What lies in `from` but in none of the cutters.
        public static IndexedMesh Subtract(IndexedMesh from, IndexedMesh[] cutters, Mode mode, TidyOptions options)
        {
            var native = new NativeOptions(options);
            return Call(Joined(from, cutters), IndexedMesh.Record, (output, meshes) =>
            {
                TidyReport report;
                int status = Native.orva_tidy_subtract_solids(
                    output, out report, ref meshes[0], Rest(meshes), meshes.Length - 1, (int)mode, ref native);
                output.Report = report;
                return status;
            });
        }
        public static IndexedMesh Subtract(Mesh from, Mesh[] cutters, Mode mode, TidyOptions options)
        {
            var native = new NativeOptions(options);
            return Call(Joined(from, cutters), Mesh.Record, (output, meshes) =>
            {
                TidyReport report;
                int status = Native.orva_tidy_subtract(
                    output, out report, ref meshes[0], Rest(meshes), meshes.Length - 1, (int)mode, ref native);
                output.Report = report;
                return status;
            });
        }

        private delegate int Operation<Record>(
            IndexedMesh output, out TidyReport report, Record[] meshes, int count, ref NativeOptions options);

        private static IndexedMesh Of(Mesh[] meshes, Operation<MeshD> operation, TidyOptions options)
        {
            return Of(meshes, Mesh.Record, operation, options);
        }
        private static IndexedMesh Of(IndexedMesh[] meshes, Operation<SolidRecord> operation, TidyOptions options)
        {
            return Of(meshes, IndexedMesh.Record, operation, options);
        }
        private static IndexedMesh Of<Record>(
            SafeHandle[] meshes, Func<SafeHandle, Record> read, Operation<Record> operation, TidyOptions options)
        {
            var native = new NativeOptions(options);
            return Call(meshes, read, (output, records) =>
            {
                TidyReport report;
                int status = operation(output, out report, records, records.Length, ref native);
                output.Report = report;
                return status;
            });
        }

        private static IndexedMesh Call<Record>(
            SafeHandle[] meshes, Func<SafeHandle, Record> read, Func<IndexedMesh, Record[], int> call)
        {
            var output = new IndexedMesh();
            int status = Held.By(meshes, records => call(output, records), read);
            if (status <= NotClosed) return output;
            output.Dispose();
            switch (status)
            {
                case OutOfMemory: throw new OutOfMemoryException();
                case TooLarge: throw new OverflowException("more than 2^31 - 1 vertices or faces");
                case BadArgument: throw new ArgumentException("a face names a vertex that is not there, or an option is not valid");
                default: throw new InvalidOperationException("the task scheduler failed");
            }
        }

        private const int NotClosed = 1, OutOfMemory = 2, TooLarge = 3, BadArgument = 4;

        private static SafeHandle[] Joined(SafeHandle from, SafeHandle[] cutters)
        {
            if (cutters == null) throw new ArgumentNullException("cutters");
            var all = new SafeHandle[cutters.Length + 1];
            all[0] = from;
            cutters.CopyTo(all, 1);
            return all;
        }

        private static Record[] Rest<Record>(Record[] records)
        {
            var rest = new Record[records.Length - 1];
            Array.Copy(records, 1, rest, 0, rest.Length);
            return rest;
        }
    }

    // Keeps handles alive for a while, whatever other threads or the garbage collector do; throws where one is disposed of.
    internal static class Held
    {
        internal static Result By<Result>(SafeHandle mesh, Func<SafeHandle, Result> action)
        {
            return By(new[] { mesh }, meshes => action(meshes[0]), handle => handle);
        }

        internal static Result By<Item, Result>(SafeHandle[] meshes, Func<Item[], Result> action, Func<SafeHandle, Item> read)
        {
            if (meshes == null) throw new ArgumentNullException("meshes");
            var items = new Item[meshes.Length];
            var held = 0;
            try
            {
                for (; held < meshes.Length; ++held)
                {
                    if (meshes[held] == null) throw new ArgumentNullException("meshes");
                    var ignored = false;
                    meshes[held].DangerousAddRef(ref ignored);
                    items[held] = read(meshes[held]);
                }
                return action(items);
            }
            finally
            {
                while (held > 0) meshes[--held].DangerousRelease();
            }
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    internal struct MeshD
    {
        public int Count;
        public IntPtr Vertices;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal struct SolidRecord
    {
        public int VertexCount;
        public int FaceCount;
        public IntPtr Vertices;
        public IntPtr Faces;
        public IntPtr Corners;
        public IntPtr Origins;
    }

    [StructLayout(LayoutKind.Sequential)]
    internal struct NativeOptions
    {
        public double Tolerance;
        public double GapWidth;
        public int Merge;
        public int Scale;

        public NativeOptions(TidyOptions options)
        {
            options = options ?? new TidyOptions();
            Tolerance = options.Tolerance;
            GapWidth = options.GapWidth;
            Merge = (int)options.Merge;
            Scale = options.Scale ? 1 : 0;
        }
    }

    // A SafeHandle as an argument is kept alive during the call.
    internal static class Native
    {
        private const string Library = "Orva_acc"; // libOrva_acc.so, Orva_acc.dll

        [DllImport(Library)]
        internal static extern Mesh orva_meshd_create(int n);

        [DllImport(Library)]
        internal static extern void orva_meshd_destroy(IntPtr mesh);

        [DllImport(Library)]
        internal static extern void orva_bspcsg_union_mesh(Mesh output, Mesh a, Mesh b);

        [DllImport(Library)]
        internal static extern void orva_bspcsg_subtract_mesh(Mesh output, Mesh a, Mesh b);

        [DllImport(Library)]
        internal static extern void orva_bspcsg_intersect_mesh(Mesh output, Mesh a, Mesh b);

        [DllImport(Library)]
        internal static extern void orva_bspcsg_subtract_multi_mesh(Mesh output, Mesh from, [In] MeshD[] cutters, int count);

        [DllImport(Library)]
        internal static extern void orva_bspcsg_subtract_multi_union_mesh(Mesh output, Mesh from, [In] MeshD[] cutters, int count);

        private const string TidyLibrary = "Orva_tidy";

        [DllImport(TidyLibrary)]
        internal static extern void orva_tidy_free(IntPtr solid);

        [DllImport(TidyLibrary)]
        internal static extern int orva_tidy_soup(
            IndexedMesh output, out TidyReport report, ref MeshD soup, IntPtr origins, ref NativeOptions options);

        [DllImport(TidyLibrary)]
        internal static extern int orva_tidy_union(
            IndexedMesh output, out TidyReport report, [In] MeshD[] meshes, int count, ref NativeOptions options);

        [DllImport(TidyLibrary)]
        internal static extern int orva_tidy_intersect(
            IndexedMesh output, out TidyReport report, [In] MeshD[] meshes, int count, ref NativeOptions options);

        [DllImport(TidyLibrary)]
        internal static extern int orva_tidy_subtract(
            IndexedMesh output, out TidyReport report, ref MeshD from, [In] MeshD[] cutters, int count, int cutting,
            ref NativeOptions options);

        [DllImport(TidyLibrary)]
        internal static extern int orva_tidy_union_solids(
            IndexedMesh output, out TidyReport report, [In] SolidRecord[] meshes, int count, ref NativeOptions options);

        [DllImport(TidyLibrary)]
        internal static extern int orva_tidy_intersect_solids(
            IndexedMesh output, out TidyReport report, [In] SolidRecord[] meshes, int count, ref NativeOptions options);

        [DllImport(TidyLibrary)]
        internal static extern int orva_tidy_subtract_solids(
            IndexedMesh output, out TidyReport report, ref SolidRecord from, [In] SolidRecord[] cutters, int count, int cutting,
            ref NativeOptions options);
    }
}
